// Chooses among the machine's cameras. Hidden unless an applet shows it.
import QtQuick 2.5
import QtQuick.Controls 1.4
import QtMultimedia 5.5

ComboBox {
    property Camera camera

    model: QtMultimedia.availableCameras
    textRole: "displayName"
    visible: false

    onActivated: {
        camera.stop();
        camera.deviceId = model[index].deviceId;
        camera.start();
    }
    onVisibleChanged: {
        if (!visible)
            return;
        for (var i = 0; i < model.length; i++) {
            if (model[i].deviceId === camera.deviceId) {
                currentIndex = i;
                break;
            }
        }
    }
}
