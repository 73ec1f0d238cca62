// Small comforts. The site works without this script.
(function () {
  "use strict";

  // Opens content in the window that its author chose; otherwise the links open a plain new one.
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

  // The search leads to pages of an imported site, which show in the frame of its node's page.
  function showPage() {
    var asked = /^#v-page=(.+)$/.exec(location.hash);
    var frame = document.querySelector("main > iframe.embed");
    if (!asked || !frame) {
      return;
    }
    var page = new URL(asked[1], location.href).href;
    if (page.indexOf(new URL(".", location.href).href) === 0) {
      frame.contentWindow.location.replace(page);
      var alone = document.querySelector("main > .alone-link a");
      if (alone) {
        alone.href = page;
      }
    }
  }
  window.addEventListener("hashchange", showPage);
  showPage();

  // A long tree shows the present page without being scrolled by hand.
  var nav = document.getElementById("v-nav");
  var current = nav && nav.querySelector("[aria-current]");
  if (current && nav.scrollHeight > nav.clientHeight) {
    nav.scrollTop = current.getBoundingClientRect().top - nav.getBoundingClientRect().top -
      nav.clientHeight / 3;
  }

  // On a phone the link that opens the tree also closes it.
  var menu = document.querySelector(".site-tools .menu");
  function follow() {
    var open = location.hash === "#v-nav";
    menu.setAttribute("aria-expanded", String(open));
    menu.setAttribute("href", open ? "#v-content" : "#v-nav");
  }
  if (menu) {
    menu.setAttribute("role", "button");
    menu.addEventListener("keydown", function (event) {
      if (event.key === " ") {
        event.preventDefault();
        menu.click();
      }
    });
    window.addEventListener("hashchange", follow);
    follow();
  }

  // What is wider than the page can be scrolled by keyboard in every browser.
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
})();
