import QtQuick
import QtQml
import Kelvinbar.Panel

/// The hidden readings, of which one can be shown again.
PanelMenu {
    id: hiddenMenu

    required property HiddenRows hidden

    Instantiator {
        model: hiddenMenu.hidden.names
        onObjectAdded: (index, item) => hiddenMenu.insertItem(index, item)
        onObjectRemoved: (index, item) => hiddenMenu.removeItem(item)

        // Before Qt 6.5, a delegate cannot declare that it uses ids around it (ComponentBehavior).
        // qmllint disable unqualified
        PanelMenuItem {
            required property string modelData
            required property int index

            text: modelData
            onTriggered: hiddenMenu.hidden.show(index)
        }
        // qmllint enable unqualified
    }
}
