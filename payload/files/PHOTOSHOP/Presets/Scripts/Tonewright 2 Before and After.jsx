// Shows or hides the layer that Tonewright 2 has made.
#target photoshop
var layers = app.documents.length > 0 ? app.activeDocument.layers : [];
for (var i = 0; i < layers.length; i++) {
    if (layers[i].name === "Tonewright 2") {
        layers[i].visible = !layers[i].visible;
    }
}
