// In the slide page of a recorded lecture: carries out what the film, in the page around it, calls for.
(function () {
  "use strict";
  if (window.parent === window) {
    return;
  }
  window.addEventListener("message", function (event) {
    // Any site may put this page into a frame of its own. Pages on a disk have no origin to compare; there none
    // but their neighbours can frame them.
    var foreign = window.location.protocol === "file:" ? event.origin !== "null" && event.origin !== "file://" :
      event.origin !== window.location.origin;
    if (foreign || event.source !== window.parent || !event.data || typeof event.data.vorelScript !== "string") {
      return;
    }
    try {
      (0, eval)(event.data.vorelScript); // as the page's own scripts are run
    } catch (e) {
      // a call that the page does not know
    }
  });
  window.addEventListener("load", function () {
    window.parent.postMessage({ vorelSlides: "ready" }, "*");
  });
})();
