pragma Singleton
import QtQuick

/// The control under the pointer, whose tooltip is shown.
QtObject {
    property Item item: null

    function hover(control: Item, isHovered: bool) {
        if (isHovered)
            item = control;
        else if (item === control)
            item = null;
    }
}
