// Steps through the course. The list of slides comes as a script (course.js), since a page that lies on a disk may not
// fetch a file.
(function () {
  "use strict";

  var slides = [];
  var now = 0;
  var awaited = -1;
  var typed = "";
  var typedTimer = 0;
  var here = function (id) { return document.getElementById(id); };
  var frame = here("slide");
  var lists = [here("overview"), here("keys")];

  function clamp(step) {
    return Math.max(0, Math.min(slides.length - 1, step));
  }

  function showPlace() {
    here("place").textContent = typed ? typed + "…" : now + " / " + (slides.length - 1);
    here("title").textContent = slides[now][0];
    document.title = slides[now][0];
    here("first").disabled = here("before").disabled = now === 0;
    here("last").disabled = here("behind").disabled = now === slides.length - 1;
    try {
      history.replaceState(null, "", "#" + now);
    } catch (refused) {
      // The place is not kept then.
    }
  }

  function show(step) {
    now = clamp(step);
    document.body.classList.remove("dark");
    var slide = slides[now];
    var link = here("outside").firstElementChild;
    here("outside").hidden = !slide[3];
    if (slide[3]) {
      link.href = slide[2];
      link.textContent = slide[0];
    } else {
      awaited = now;
      // Not by "src": each would be a step of the browser's own history.
      frame.contentWindow.location.replace(new URL(slide[2], location.href.split("#")[0]).href);
    }
    window.focus();
    showPlace();
  }

  // What lies behind a list is out of reach while the list is open.
  function cover(covered) {
    document.querySelector("main").inert = covered;
    here("bar").inert = covered;
  }

  function close() {
    var open = lists.filter(function (list) { return !list.hidden; });
    open.forEach(function (list) { list.hidden = true; });
    if (open.length) {
      cover(false);
      window.focus();
      frame.focus();
    }
    return open.length > 0;
  }

  // Tab goes round within an open list, in browsers that don't know "inert" too.
  function goRound(list, event) {
    var stops = list.querySelectorAll("input, button");
    var first = stops[0] || list;
    var last = stops[stops.length - 1] || list;
    if (!list.contains(document.activeElement) || document.activeElement === (event.shiftKey ? first : last)) {
      event.preventDefault();
      (event.shiftKey ? last : first).focus();
    }
  }

  function fillOverview() {
    var wanted = here("filter").value.replace(/\s/g, "").toLowerCase();
    var nodes = here("nodes");
    nodes.textContent = "";
    slides.forEach(function (slide, step) {
      if (wanted && slide[0].replace(/\s/g, "").toLowerCase().indexOf(wanted) < 0) {
        return;
      }
      var button = document.createElement("button");
      var number = document.createElement("span");
      number.className = "number";
      number.textContent = step;
      button.type = "button";
      button.style.paddingLeft = 0.5 + Math.min(slide[1], 12) * 1.2 + "rem";
      button.append(number, slide[0]);
      button.addEventListener("click", function () {
        close();
        show(step);
      });
      if (step === now) {
        button.setAttribute("aria-current", "page");
      }
      var item = document.createElement("li");
      item.append(button);
      nodes.append(item);
    });
  }

  function openOverview() {
    close();
    here("filter").value = "";
    fillOverview();
    here("overview").hidden = false;
    cover(true);
    here("filter").focus();
    var current = here("nodes").querySelector("[aria-current]");
    if (current) {
      current.scrollIntoView({ block: "center" });
    }
  }

  function toggleFull() {
    if (document.fullscreenElement) {
      document.exitFullscreen();
    } else if (document.documentElement.requestFullscreen) {
      document.documentElement.requestFullscreen().catch(function () {});
    }
  }

  function goTyped() {
    clearTimeout(typedTimer);
    var step = typed;
    typed = "";
    if (step) {
      show(Number(step));
    }
  }

  function press(key) {
    if (/^[0-9]$/.test(key)) {
      typed = (typed + key).slice(-6);
      clearTimeout(typedTimer);
      typedTimer = setTimeout(goTyped, 1500);
      showPlace();
    } else if (key === "Enter" && typed) {
      goTyped();
    } else if (key === "ArrowRight" || key === "PageDown" || key === "Enter") {
      show(now + 1);
    } else if (key === "ArrowLeft" || key === "PageUp" || key === "Backspace") {
      show(now - 1);
    } else if (key === "Home") {
      show(0);
    } else if (key === "End") {
      show(slides.length - 1);
    } else if (key === "f" || key === "F") {
      toggleFull();
    } else if (key === "o" || key === "O") {
      openOverview();
    } else if (key === "b" || key === "B") {
      document.body.classList.toggle("dark");
    } else if (key === "?") {
      close();
      here("keys").hidden = false;
      cover(true);
      here("keys").focus();
    } else {
      return false;
    }
    return true;
  }

  document.addEventListener("keydown", function (event) {
    if (event.ctrlKey || event.altKey || event.metaKey) {
      return;
    }
    if (event.key === "Escape") {
      if (close()) {
        event.preventDefault();
      }
      return;
    }
    var shownList = lists.filter(function (list) { return !list.hidden; })[0];
    var inList = Boolean(shownList);
    if (inList && event.key === "Tab") {
      goRound(shownList, event);
      return;
    }
    var onButton = event.target.tagName === "BUTTON" && (event.key === "Enter" || event.key === " ");
    if (inList || onButton || event.target.tagName === "A") {
      return;
    }
    var key = event.key === " " ? (event.shiftKey ? "PageUp" : "PageDown") : event.key;
    if (press(key)) {
      event.preventDefault();
    }
  });

  window.addEventListener("message", function (event) {
    if (event.source !== frame.contentWindow || !event.data || !slides.length) {
      return;
    }
    if (event.data.vorel === "key") {
      if (event.data.key === "Escape") {
        close();
      } else {
        press(String(event.data.key));
      }
    } else if (event.data.vorel === "shown") {
      // Who steps fast hears of slides that are gone already.
      if (awaited >= 0 && event.data.step !== awaited) {
        return;
      }
      // A link on a slide has led to another one.
      now = clamp(Number(event.data.step) || 0);
      here("outside").hidden = true;
      showPlace();
      if (lists.every(function (list) { return list.hidden; })) {
        frame.focus();
      }
    }
  });

  frame.addEventListener("load", function () { awaited = -1; });

  window.addEventListener("hashchange", function () {
    show(Number(location.hash.slice(1)) || 0);
  });

  here("first").addEventListener("click", function () { show(0); });
  here("before").addEventListener("click", function () { show(now - 1); });
  here("behind").addEventListener("click", function () { show(now + 1); });
  here("last").addEventListener("click", function () { show(slides.length - 1); });
  here("list").addEventListener("click", openOverview);
  here("full").addEventListener("click", toggleFull);
  here("help").addEventListener("click", function () { press("?"); });
  here("filter").addEventListener("input", fillOverview);
  here("keys").addEventListener("click", close);

  window.vorelCourse = function (list) {
    slides = list;
    show(Number(location.hash.slice(1)) || 0);
  };
})();
