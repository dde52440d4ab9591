pragma Singleton
import QtQuick

/// The control whose tooltip is shown: the one that the pointer or the keyboard has come to last.
QtObject {
    property Item item: null

    function hover(control: Item, isHovered: bool) {
        if (isHovered)
            item = control;
        else if (item === control)
            item = null;
    }
}
