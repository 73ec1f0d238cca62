// Tells the presentation around a slide which slide it is, and which keys were pressed on it. Pages that lie on a disk
// may not look into each other, but they may send messages.
(function () {
  "use strict";

  // What is wider than the slide can be scrolled by keyboard in every browser.
  function reach() {
    document.querySelectorAll(".page, .page pre").forEach(function (box) {
      if (box.scrollWidth > box.clientWidth && !box.hasAttribute("tabindex")) {
        box.setAttribute("tabindex", "0");
        box.setAttribute("role", "region");
        box.setAttribute("aria-label", "可左右滚动的内容");
      }
    });
  }
  window.addEventListener("load", reach);
  window.addEventListener("resize", reach);

  if (window.parent === window) {
    return;
  }
  document.documentElement.classList.add("framed");
  var steps = ["ArrowRight", "ArrowLeft", "PageDown", "PageUp", " ", "Home", "End", "Enter", "Escape", "Backspace",
    "f", "F", "o", "O", "b", "B", "?"];

  function tell(message) {
    window.parent.postMessage(message, "*");
  }

  function isTyping(target) {
    return target.isContentEditable || /^(INPUT|TEXTAREA|SELECT|BUTTON|VIDEO|AUDIO|SUMMARY)$/.test(target.tagName);
  }

  // A slide that is longer than the screen is read to its end before the next one comes.
  function scrolled(down) {
    var page = document.scrollingElement;
    var rest = down ? page.scrollHeight - page.clientHeight - page.scrollTop : page.scrollTop;
    if (rest < 8) {
      return false;
    }
    page.scrollBy(0, (down ? 0.9 : -0.9) * page.clientHeight);
    return true;
  }

  document.addEventListener("keydown", function (event) {
    if (event.ctrlKey || event.altKey || event.metaKey || isTyping(event.target)) {
      return;
    }
    var key = event.key;
    var onLink = event.target.tagName === "A";
    if ((steps.indexOf(key) < 0 && !/^[0-9]$/.test(key)) || (onLink && key === "Enter")) {
      return;
    }
    event.preventDefault();
    if (key === " ") {
      key = event.shiftKey ? "PageUp" : "PageDown";
    }
    if ((key === "PageDown" && scrolled(true)) || (key === "PageUp" && scrolled(false))) {
      return;
    }
    tell({ vorel: "key", key: key });
  });
  tell({ vorel: "shown", step: Number(document.body.getAttribute("data-step")) });
})();
