// Opens content in the window that its author chose. Without this script the links open a plain new window.
(function () {
  "use strict";

  function features(kind) {
    if (kind === "2") {
      return "top=0,left=0,height=" + screen.availHeight + ",width=" + screen.availWidth +
        ",resizable=yes,scrollbars=yes";
    }
    if (kind === "3") {
      return "fullscreen=yes,top=0,left=0,height=" + screen.height + ",width=" + screen.width +
        ",resizable=yes,scrollbars=yes";
    }
    return "";
  }

  document.addEventListener("click", function (event) {
    var link = event.target.closest ? event.target.closest("a[data-open]") : null;
    if (!link || event.button !== 0 || event.ctrlKey || event.shiftKey || event.metaKey || event.altKey) {
      return;
    }
    var kind = link.getAttribute("data-open");
    if (kind !== "2" && kind !== "3") {
      return;
    }
    var opened = window.open(link.href, "_blank", features(kind));
    if (opened) {
      opened.opener = null;
      event.preventDefault();
    }
  });

  // A long tree shows the present page without being scrolled by hand.
  var nav = document.querySelector(".site-nav");
  var current = nav && nav.querySelector("[aria-current]");
  if (current && nav.scrollHeight > nav.clientHeight) {
    nav.scrollTop = current.getBoundingClientRect().top - nav.getBoundingClientRect().top -
      nav.clientHeight / 3;
  }
})();
