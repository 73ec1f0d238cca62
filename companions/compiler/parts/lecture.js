// Plays a recorded lecture: the slides follow the film, and the outline leads through it. Without this script the film
// plays by itself, the slide page stands beside it, and an entry of the outline opens the film at its place.
(function () {
  "use strict";

  var JUMP = 2000; // farther than a film runs between two looks
  var lecture = document.querySelector(".lecture");
  var film = lecture && lecture.querySelector("video");
  var slides = lecture && lecture.querySelector("iframe");
  var data = document.getElementById("v-lecture");
  if (!film) {
    return;
  }
  var steps = data ? JSON.parse(data.textContent) : [];
  var entries = Array.prototype.slice.call(lecture.querySelectorAll(".outline a[data-time]"));
  var last = -1;

  function run(step) {
    var place = window.location;
    slides.contentWindow.postMessage({ vorelScript: step[1] }, place.protocol === "file:" ? "*" : place.origin);
  }

  // How many steps lie before a place.
  function endOf(time) {
    var low = 0;
    var high = steps.length;
    while (low < high) {
      var middle = (low + high) >> 1;
      if (steps[middle][0] <= time) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

  // The last call of a slide undoes what went before; of the places of the pointer behind it the last counts.
  function show(end) {
    var state = [];
    var place = false;
    for (var i = end - 1; i >= 0; --i) {
      if (steps[i][2] || !place) {
        state.unshift(steps[i]);
      }
      place = true;
      if (steps[i][2]) {
        break;
      }
    }
    state.forEach(run);
  }

  function follow() {
    var time = film.currentTime * 1000;
    var before = last;
    last = time;
    if (slides) {
      if (before < 0 || time < before || time > before + JUMP) {
        show(endOf(time));
      } else {
        steps.slice(endOf(before), endOf(time)).forEach(run);
      }
    }
    var current = null;
    entries.forEach(function (entry) {
      if (Number(entry.getAttribute("data-time")) <= time + 50) {
        current = entry;
      }
    });
    entries.forEach(function (entry) {
      if (entry === current) {
        entry.setAttribute("aria-current", "true");
      } else {
        entry.removeAttribute("aria-current");
      }
    });
  }

  window.addEventListener("message", function (event) {
    if (slides && event.source === slides.contentWindow && event.data && event.data.vorelSlides === "ready") {
      last = -1;
      follow();
    }
  });
  film.addEventListener("timeupdate", follow);
  film.addEventListener("seeked", function () {
    last = -1;
    follow();
  });
  setInterval(function () {
    if (!film.paused) {
      follow();
    }
  }, 100);
  entries.forEach(function (entry) {
    entry.addEventListener("click", function (event) {
      event.preventDefault();
      film.currentTime = Number(entry.getAttribute("data-time")) / 1000;
      film.play();
    });
  });
})();
