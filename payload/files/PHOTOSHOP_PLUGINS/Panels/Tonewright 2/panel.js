document.getElementById("run").onclick = function () {
    window.runScript("Tonewright 2.jsx");
};
