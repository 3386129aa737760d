// Runs Tonewright 2 on a copy of the active layer.
#target photoshop
if (app.documents.length > 0) {
    var layer = app.activeDocument.activeLayer.duplicate();
    layer.name = "Tonewright 2";
    app.activeDocument.activeLayer = layer;
    executeAction(stringIDToTypeID("com.quarrytone.tonewright2"), undefined, DialogModes.ALL);
}
