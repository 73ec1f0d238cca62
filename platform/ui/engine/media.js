// Puts a card in place of each medium that the engine can't play, and of each frame with a file that it doesn't show:
// with its name and kind, in its size, and a click on it asks the program to open the file. Runs in a world of its own in
// every frame of a page that is looked at, never in one that is edited. "kinds" is MediaKinds::AsJson; the program is told
// of a click behind "token", and of a file that a frame names behind "told".
(function (kinds, token, told) {
  'use strict';
  const TEXTS = kinds.texts;
  const TYPES = kinds.types.map(([pattern, name]) => [new RegExp(pattern), name]);
  const SOURCES = ['src', 'data', 'movie', 'url', 'filename', 'file'];
  const FRAMES = 'iframe, frame';
  const TAGS = 'embed, object, bgsound, applet, video, audio, ' + FRAMES;
  const LEAST = {width: 120, height: 60};
  const done = new WeakSet();
  const hosts = new WeakMap();
  // The engine's own page around a film, as in a frame that shows it.
  const isAlone = /^(video|audio)\//.test(document.contentType);
  // What a page asks a frame that it may not look into, and the answer of a film there.
  const ASKED = 'vorel-film?';
  const ANSWER = 'vorel-film!';

  // Of what lies somewhere: other addresses hold their content themselves, or name none.
  function extensionOf(url) {
    const path = /^[a-z][a-z0-9+.-]*:\/\//i.test(url) ? url.split(/[?#]/)[0] : '';
    const name = path.slice(path.lastIndexOf('/') + 1);
    return name.includes('.') ? name.slice(name.lastIndexOf('.') + 1).toLowerCase() : '';
  }

  function entry(table, key) {
    return Object.prototype.hasOwnProperty.call(table, key) ? table[key] : null;
  }

  // What the file is, or null for what the engine shows.
  function kindOf(url) {
    const known = entry(kinds.files, extensionOf(url));
    return known && {name: known[0], mayPlay: known[1], isSound: known[2]};
  }

  function mayOpen(url) {
    const scheme = url.split(':')[0].toLowerCase();
    return scheme === 'file' || kinds.schemes.includes(scheme);
  }

  function filled(text, ...values) {
    return values.reduce((result, value, i) => result.replace('%' + (i + 1), () => value), text);
  }

  function nameOf(url) {
    const name = url.split(/[?#]/)[0].split('/').pop();
    try {
      return decodeURIComponent(name);
    } catch (broken) {
      // Escaped in the code page of old pages.
      const bytes = Uint8Array.from(unescape(name), (c) => c.charCodeAt(0));
      return new TextDecoder('gb18030').decode(bytes);
    }
  }

  function absolute(text) {
    try {
      // A relative path of the other system's spelling.
      return new URL(text.trim().replace(/\\/g, '/'), document.baseURI).href;
    } catch (broken) {
      return '';
    }
  }

  // What a plug-in would have been given, in the order in which plug-ins look.
  function sourceOf(element) {
    const params = Array.from(element.querySelectorAll(':scope > param'));
    for (const name of SOURCES) {
      const param = params.find((p) => (p.getAttribute('name') || '').toLowerCase() === name);
      const text = element.getAttribute(name) || (param && param.getAttribute('value'));
      if (text && text.trim())
        return absolute(text);
    }
    const inner = element.querySelector('embed[src], source[src]');
    return inner ? absolute(inner.getAttribute('src')) : '';
  }

  // The kind of plug-in that an element asks for; empty for none.
  function plugInOf(element) {
    const id = (element.getAttribute('classid') || '').toLowerCase().replace(/^clsid:|[{}\s]/g, '');
    const type = (element.getAttribute('type') || '').toLowerCase();
    const known = TYPES.find(([pattern]) => pattern.test(type));
    return entry(kinds.classes, id) || (known ? known[1] : '') || (id ? TEXTS.plugIn : '');
  }

  function sizeOf(element) {
    const box = element.getBoundingClientRect();
    const side = (name, shown, otherwise) => {
      const text = element.getAttribute(name) || '';
      if (/^\s*\d+(\.\d+)?\s*%/.test(text))
        return text.trim();
      return Math.max(parseFloat(text) || shown || otherwise, LEAST[name]) + 'px';
    };
    return {width: side('width', box.width, 300), height: side('height', box.height, 150)};
  }

  // Music without a place in the page: a card of its own at the rim, which moves nothing.
  function isUnseen(element) {
    // Which the engine takes for hidden whatever its value is.
    if (element.hasAttribute('hidden'))
      return element.getAttribute('hidden').toLowerCase() !== 'false';
    const style = getComputedStyle(element);
    const parent = element.parentElement && getComputedStyle(element.parentElement);
    const small = (side) => /^[01](\.\d+)?px$/.test(style[side]);
    const box = element.getBoundingClientRect();
    const isOutside = box.width > 0 && (box.right + scrollX <= 0 || box.bottom + scrollY <= 0);
    // What a page hides with all around it shows again with that.
    return element.localName === 'bgsound' || style.display === 'none' || small('width') ||
        small('height') || isOutside || (style.visibility === 'hidden' && (!parent || parent.visibility !== 'hidden'));
  }

  // An element of ours in the page: a shadow root that the page doesn't reach, with a card or a player.
  function makeHost(size, otherwise) {
    const host = document.createElement('span');
    host.style.cssText = 'display:inline-block;vertical-align:bottom;width:' + size.width +
        ';height:' + size.height;
    hosts.set(host, {root: host.attachShadow({mode: 'closed'}), otherwise});
    done.add(host);
    return host;
  }

  function showCard(host, url, kind) {
    const button = document.createElement('button');
    const name = nameOf(url);
    const opens = url && mayOpen(url);
    const text = url ? filled(TEXTS.named, kind, name) : filled(TEXTS.withoutFile, kind);
    const advice = opens ? filled(TEXTS.opens, kind) : url ? filled(TEXTS.notOpened, kind) : text;
    button.type = 'button';
    button.disabled = !opens;
    button.title = opens ? filled(TEXTS.opensFile, name) : advice;
    button.setAttribute('aria-label', text);
    const parts = [];
    // With the height from which there is room for it; the tooltip and the name that is read out have the rest.
    for (const [line, style, least] of [[opens ? '▶' : '', 'font-size:24px;line-height:1', 80],
                                        [name, 'font-weight:bold', 0], [advice, 'color:#555', name ? 50 : 0]]) {
      const part = document.createElement('div');
      part.textContent = line;
      part.style.cssText = 'overflow:hidden;text-overflow:ellipsis;max-width:100%;flex:none;' + style;
      parts.push([part, least]);
      if (line)
        button.append(part);
    }
    new ResizeObserver(() => {
      for (const [part, least] of parts)
        part.hidden = button.offsetHeight < least;
    }).observe(button);
    button.style.cssText = 'all:initial;box-sizing:border-box;width:100%;height:100%;display:flex;gap:4px;' +
        'flex-direction:column;align-items:center;justify-content:center;overflow:hidden;padding:4px;' +
        'font:13px sans-serif;color:#222;background:#eef3f8;border:1px solid #9ab;text-align:center;' +
        'white-space:nowrap;cursor:' + (opens ? 'pointer' : 'default');
    const focus = document.createElement('style');
    focus.textContent = 'button:focus-visible{outline:2px solid #1a66c2!important;outline-offset:-3px!important}';
    button.addEventListener('click', (event) => {
      event.preventDefault();
      event.stopPropagation();
      if (event.isTrusted && opens)
        console.debug(token + url);
    });
    hosts.get(host).root.replaceChildren(focus, button);
  }

  // For what the engine may have the decoder of.
  function showPlayer(host, url, kind, autoplay) {
    const player = document.createElement(kind.isSound ? 'audio' : 'video');
    player.controls = true;
    player.style.cssText = 'width:100%;height:100%' + (kind.isSound ? '' : ';background:black');
    player.autoplay = autoplay;
    play(host, player, url, (failed, name) => showCard(host, failed, name));
  }

  // Watched from before it is given the film: just behind that it has none yet, too.
  function play(host, player, url, give) {
    watchPlayable(player, (failed, name) => player.parentNode && give(failed, name));
    player.src = url;
    hosts.get(host).root.replaceChildren(player);
  }

  function card(url, kind, size) {
    const host = makeHost(size, kind);
    showCard(host, url, kind);
    return host;
  }

  // Takes the place of an element, for the page's scripts too: they know it by its names.
  function stand(host, element) {
    const place = element.style.position;
    if (place === 'absolute' || place === 'fixed') {
      for (const name of ['position', 'left', 'top', 'right', 'bottom', 'z-index', 'width', 'height']) {
        const value = element.style.getPropertyValue(name);
        if (value)
          host.style.setProperty(name, value);
      }
    }
    for (const name of ['id', 'name', 'class']) {
      if (element.hasAttribute(name))
        host.setAttribute(name, element.getAttribute(name));
    }
    // The outermost of nested players holds the place for all.
    element.replaceWith(host);
    for (const order of ['play', 'pause'])
      host.addEventListener('vorel-' + order, () => {
        const player = hosts.get(host).root.querySelector('video, audio');
        if (player)
          Promise.resolve(player[order]()).catch(() => {});
      });
    const script = document.createElement('script');
    script.textContent = '(' + speakForPlayer + ')(document.currentScript.parentNode);';
    host.append(script);
    script.remove();
  }

  // Runs among the page's own scripts, which see none of what is done here: they give a player another film by setting
  // what plug-ins had, and it becomes the attribute that is watched.
  function speakForPlayer(host) {
    const source = {
      configurable: true,
      get: () => host.getAttribute('src') || '',
      set: (value) => host.setAttribute('src', value),
    };
    for (const name of ['src', 'Src', 'SRC', 'url', 'URL', 'filename', 'fileName', 'FileName', 'movie', 'Movie',
                        'source', 'Source', 'data'])
      Object.defineProperty(host, name, source);
    const send = (order) => () => host.dispatchEvent(new Event('vorel-' + order));
    const orders = {play: send('play'), pause: send('pause'), stop: send('pause')};
    Object.assign(host, orders, {
      Play: orders.play, DoPlay: orders.play, Pause: orders.pause, DoPause: orders.pause, Stop: orders.stop,
      DoStop: orders.stop, StopPlay: orders.stop, controls: orders, Open: source.set, SetSource: source.set,
      LoadMovie: (layer, url) => source.set(url), load: () => {},
    });
    for (const name of [host.id, host.getAttribute('name')]) {
      for (const scope of [document, window]) {
        // Not what a page has under such a name anyway, but one of ours that has given way in its turn.
        if (name && (!(name in scope) || (scope[name] instanceof Element && !scope[name].isConnected)))
          scope[name] = host;
      }
    }
  }

  // A script of the page has named another film.
  function feed(host, text) {
    const url = text.trim() && absolute(text);
    const kind = url ? kindOf(url) : null;
    const isSeen = host.style.display !== 'none';
    if (kind && kind.mayPlay)
      isSeen ? showPlayer(host, url, kind, true) : playUnseen(host, url, false);
    else if (isSeen)
      showCard(host, url, kind ? kind.name : hosts.get(host).otherwise);
    else if (kind)
      comeToLight(host, url, kind.name);
    else
      hosts.get(host).root.replaceChildren();
  }

  function replace(element, url, kind) {
    if (done.has(element) || !element.isConnected)
      return;
    done.add(element);
    if (isUnseen(element)) {
      if (!url)
        return;
      const chip = card(url, kind, {width: '220px', height: '76px'});
      stand(chip, element);
      chip.style.cssText += ';position:static;flex:none;width:220px;height:76px';
      rim().append(chip);
      // The engine leaves the column somewhere between the cards.
      column.scrollTop = 0;
      return;
    }
    if (isAlone)
      return fill(document, url, kind);
    if (element.matches(FRAMES))
      return fillFrame(element, url, kind);
    stand(card(url, kind, sizeOf(element)), element);
  }

  // Where the cards of what has no place of its own stand above each other, as many as they are.
  function rim() {
    if (column && column.isConnected)
      return column;
    column = document.createElement('div');
    column.style.cssText = 'position:fixed;right:12px;bottom:12px;z-index:2147483647;max-height:calc(100vh - 24px);' +
        'display:flex;flex-direction:column-reverse;gap:8px;overflow:auto';
    (document.body || document.documentElement).append(column);
    return column;
  }
  let column = null;

  // A card that is all there is in a document.
  function fill(page, url, kind) {
    const host = card(url, kind, {width: '100%', height: '100vh'});
    host.style.display = 'block';
    page.body.replaceChildren(host);
    page.body.style.cssText = 'margin:0;height:100vh;overflow:hidden;background:white';
  }

  // Nothing else than a frame has a place among frames, and links of the page lead into one by its name.
  function fillFrame(frame, url, kind) {
    const show = () => frame.contentDocument ? fill(frame.contentDocument, url, kind) :
                                               stand(card(url, kind, sizeOf(frame)), frame);
    frame.addEventListener('load', show, {once: true});
    frame.src = 'about:blank';
  }

  // Whether the engine has the decoders is known when it has tried.
  function watchPlayable(element, give) {
    if (done.has(element))
      return;
    const fail = () => {
      const url = element.currentSrc || sourceOf(element);
      if (url && !/^(blob|data):/.test(url))
        give(url, (kindOf(url) || {name: element.localName === 'audio' ? TEXTS.sound : TEXTS.video}).name);
    };
    const broken = () => element.error || element.networkState === HTMLMediaElement.NETWORK_NO_SOURCE;
    if (element.error)
      return fail();
    // Before it looks at its sources an element has none either.
    if (broken())
      setTimeout(() => broken() && sourceOf(element) && fail(), 300);
    element.addEventListener('error', () => broken() && fail());
    // A list of sources tells of each, and of the end by the state alone.
    for (const source of element.querySelectorAll('source'))
      source.addEventListener('error', () => setTimeout(() => broken() && fail()));
  }

  // A film that is there is watched within its frame. Of one that isn't the frame is empty, or the engine's own, which
  // nobody may look into, as into a stranger's.
  function watchFrame(frame, url, kind) {
    const judge = (isEmpty) => {
      // Not for the film that it had before.
      if (isEmpty && sourceOf(frame) === url)
        replace(frame, url, kind);
    };
    const check = () => {
      if (frame.contentDocument)
        judge(frame.contentDocument.URL === 'about:blank');
      else
        askFrame(frame, url.startsWith('file:') ? 1000 : 10000, judge);
    };
    if (frame.loading === 'lazy') {
      // Empty until the person comes near it, and an empty page's load is told before.
      new IntersectionObserver((entries, observer) => {
        if (!entries.some((entry) => entry.isIntersecting))
          return;
        observer.disconnect();
        setTimeout(check, 10000);
      }).observe(frame);
    } else if (document.readyState === 'complete') {
      frame.addEventListener('load', check, {once: true});
      // Of one that is refused nothing is told.
      setTimeout(check, url.startsWith('file:') ? 1000 : 10000);
    } else {
      window.addEventListener('load', check, {once: true});
    }
  }

  // Of a film that is refused nothing comes.
  function askFrame(frame, patience, judge) {
    let isThere = false;
    const hear = (event) => {
      isThere = isThere || (event.source === frame.contentWindow && event.data === ANSWER);
    };
    window.addEventListener('message', hear);
    if (frame.contentWindow)
      frame.contentWindow.postMessage(ASKED, '*');
    setTimeout(() => {
      window.removeEventListener('message', hear);
      judge(!isThere);
    }, patience);
  }

  function answer(event) {
    const film = document.querySelector('video, audio');
    const say = () => event.source && event.source.postMessage(ANSWER, '*');
    // A card that has taken its place is something, too.
    if (!film || film.readyState > HTMLMediaElement.HAVE_NOTHING)
      say();
    else
      film.addEventListener('loadedmetadata', say, {once: true});
  }

  // Music behind a page, which the engine has no element for.
  function playBehind(element, url) {
    done.add(element);
    const loop = (element.getAttribute('loop') || '').toLowerCase();
    const host = makeHost(LEAST, TEXTS.sound);
    host.style.display = 'none';
    stand(host, element);
    playUnseen(host, url, loop === '-1' || loop === 'infinite');
  }

  function playUnseen(host, url, isEndless) {
    const audio = document.createElement('audio');
    audio.autoplay = true;
    audio.loop = isEndless;
    play(host, audio, url, (failed, name) => comeToLight(host, failed, name));
  }

  function comeToLight(host, url, kind) {
    done.delete(host);
    replace(host, url, kind);
  }

  function look(element) {
    if (done.has(element))
      return;
    if (element.localName === 'video' || element.localName === 'audio')
      return watchPlayable(element, (failed, name) => replace(element, failed, name));
    const url = element.hasAttribute('srcdoc') ? '' : sourceOf(element);
    const kind = url ? kindOf(url) : null;
    if (element.localName === 'bgsound') {
      if (url && kind && kind.mayPlay)
        playBehind(element, url);
      else if (url)
        replace(element, url, kind ? kind.name : TEXTS.sound);
      return;
    }
    if (element.matches(FRAMES)) {
      if (kind)
        console.debug(told + url);
      if (kind && kind.mayPlay)
        watchFrame(element, url, kind.name);
      else if (kind)
        replace(element, url, kind.name);
      return;
    }
    const plugIn = plugInOf(element);
    if (element.localName === 'applet')
      return replace(element, '', TEXTS.applet);
    if (kind)
      return kind.mayPlay ? playInstead(element, url, kind) : replace(element, url, kind.name);
    if (plugIn && !isShown(element))
      replace(element, url, plugIn);
  }

  function playInstead(element, url, kind) {
    if (isUnseen(element))
      return playBehind(element, url);
    done.add(element);
    const host = makeHost(sizeOf(element), kind.name);
    showPlayer(host, url, kind, /^(true|1|-1)$/i.test(element.getAttribute('autostart') || ''));
    stand(host, element);
  }

  // An object that the engine shows itself, or something of the page's own in place of it.
  function isShown(element) {
    if (element.localName !== 'object')
      return false;
    const rest = Array.from(element.childNodes).filter((node) => !/^(param|embed)$/i.test(node.nodeName));
    return rest.some((node) => node.nodeType === Node.ELEMENT_NODE ? !node.matches('p:empty, br, object') :
                                                                     node.nodeType === Node.TEXT_NODE && node.data.trim());
  }

  function lookBelow(root) {
    if (root.matches && root.matches(TAGS))
      look(root);
    if (root.querySelectorAll)
      root.querySelectorAll(TAGS).forEach((element) => element.isConnected && look(element));
  }

  if (isAlone)
    window.addEventListener('message', (event) => event.data === ASKED && answer(event));
  lookBelow(document);
  // Pages of that time write their players by script.
  new MutationObserver((changes) => {
    for (const change of changes) {
      if (change.type === 'attributes' && hosts.has(change.target))
        feed(change.target, change.target.getAttribute(change.attributeName) || '');
      if (change.type === 'attributes' && change.target.matches(FRAMES) && change.attributeName === 'src') {
        done.delete(change.target);
        look(change.target);
      }
      change.addedNodes.forEach((node) => node.isConnected && lookBelow(node));
    }
  }).observe(document, {subtree: true, childList: true, attributes: true, attributeFilter: SOURCES});
})
