// Puts a card in place of each medium that the engine can't play: with its name and kind, in its size, and a
// click on it asks the program to open the file. Runs in a world of its own in every frame of a page that is
// looked at, never in one that is edited. "kinds": extension to [name, whether the engine may play it].
(function (kinds, token) {
  'use strict';
  const CLASSES = {
    'd27cdb6e-ae6d-11cf-96b8-444553540000': 'Flash 动画',
    '166b1bca-3f9c-11cf-8075-444553540000': 'Shockwave 动画',
    '22d6f312-b0f6-11d0-94ab-0080c74c7e95': 'Windows Media 视频',
    '6bf52a52-394a-11d3-b153-00c04f79faa6': 'Windows Media 视频',
    '05589fa1-c356-11ce-bf01-00aa0055595a': 'Windows Media 视频',
    'cfcdaa03-8be4-11cf-b84b-0020afbbccfa': 'RealMedia 视频',
    '02bf25d5-8c17-4b23-bc80-d3488abddc6b': 'QuickTime 视频',
  };
  const TYPES = [
    [/shockwave-flash|futuresplash/, 'Flash 动画'], [/application\/x-director/, 'Shockwave 动画'],
    [/x-mplayer2|x-ms-|x-oleobject/, 'Windows Media 视频'], [/realaudio|realmedia/, 'RealMedia 视频'],
    [/quicktime/, 'QuickTime 视频'], [/midi?$/, 'MIDI 音乐'], [/^video\//, '视频'], [/^audio\//, '声音'],
  ];
  const SOURCES = ['src', 'data', 'movie', 'url', 'filename', 'file'];
  const TAGS = 'embed, object, bgsound, applet, video, audio, iframe';
  const LEAST = {width: 120, height: 60};
  const done = new WeakSet();

  function extensionOf(url) {
    const path = url.split(/[?#]/)[0];
    const name = path.slice(path.lastIndexOf('/') + 1);
    return name.includes('.') ? name.slice(name.lastIndexOf('.') + 1).toLowerCase() : '';
  }

  function kindOf(url) {
    const extension = extensionOf(url);
    return Object.prototype.hasOwnProperty.call(kinds, extension) ? kinds[extension] : null;
  }

  function nameOf(url) {
    const name = url.split(/[?#]/)[0].split('/').pop();
    try {
      return decodeURIComponent(name);
    } catch (broken) {
      return name;
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
    return CLASSES[id] || (known ? known[1] : '') || (id ? '插件内容' : '');
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
    const small = (name) => /^[01]$/.test((element.getAttribute(name) || '').trim());
    return element.localName === 'bgsound' || small('width') || small('height') ||
        (element.hasAttribute('hidden') && element.getAttribute('hidden').toLowerCase() !== 'false') ||
        (element.localName === 'audio' && !element.controls) || element.style.display === 'none';
  }

  function card(url, kind, size) {
    const host = document.createElement('span');
    const root = host.attachShadow({mode: 'closed'});
    const button = document.createElement('button');
    const name = nameOf(url);
    const text = url ? (kind + '：' + name) : (kind + '（没有指定文件）');
    button.type = 'button';
    button.disabled = !url;
    button.title = url ? name + '\n点击打开' : text;
    button.setAttribute('aria-label', text);
    for (const [line, style] of [[url ? '▶' : '', 'font-size:24px;line-height:1'], [name, 'font-weight:bold'],
                                 [url ? kind + '，点击打开' : text, 'color:#555']]) {
      const part = document.createElement('div');
      part.textContent = line;
      part.style.cssText = 'overflow:hidden;text-overflow:ellipsis;max-width:100%;' + style;
      if (line)
        button.append(part);
    }
    button.style.cssText = 'all:initial;box-sizing:border-box;width:100%;height:100%;display:flex;gap:4px;' +
        'flex-direction:column;align-items:center;justify-content:center;overflow:hidden;padding:4px;' +
        'font:13px sans-serif;color:#222;background:#eef3f8;border:1px solid #9ab;text-align:center;' +
        'white-space:nowrap;cursor:' + (url ? 'pointer' : 'default');
    const focus = document.createElement('style');
    focus.textContent = 'button:focus-visible{outline:2px solid #1a66c2!important;outline-offset:-3px!important}';
    root.append(focus, button);
    host.style.cssText = 'display:inline-block;vertical-align:bottom;width:' + size.width +
        ';height:' + size.height;
    button.addEventListener('click', (event) => {
      event.preventDefault();
      event.stopPropagation();
      if (event.isTrusted && url)
        console.debug(token + url);
    });
    done.add(host);
    return host;
  }

  function replace(element, url, kind) {
    if (done.has(element) || !element.isConnected)
      return;
    done.add(element);
    if (isUnseen(element)) {
      if (!url)
        return;
      const chip = card(url, kind, {width: '220px', height: '76px'});
      chip.style.cssText += ';position:fixed;right:12px;z-index:2147483647;bottom:' + (12 + 84 * unseen++) + 'px';
      element.remove();
      (document.body || document.documentElement).append(chip);
      return;
    }
    const size = sizeOf(element);
    const place = element.style.position;
    const host = card(url, kind, size);
    if (place === 'absolute' || place === 'fixed') {
      for (const name of ['position', 'left', 'top', 'right', 'bottom', 'z-index', 'width', 'height']) {
        const value = element.style.getPropertyValue(name);
        if (value)
          host.style.setProperty(name, value);
      }
    }
    // The outermost of nested players holds the place for all.
    element.replaceWith(host);
  }
  let unseen = 0;

  // Whether the engine has the decoders is known when it has tried.
  function watchPlayable(element) {
    if (done.has(element))
      return;
    const fail = () => {
      const url = element.currentSrc || sourceOf(element);
      if (url && !/^(blob|data):/.test(url))
        replace(element, url, (kindOf(url) || [element.localName === 'audio' ? '声音' : '视频'])[0]);
    };
    const broken = () => element.error || element.networkState === HTMLMediaElement.NETWORK_NO_SOURCE;
    if (broken() && sourceOf(element))
      return fail();
    element.addEventListener('error', () => broken() && fail());
    // A list of sources tells of each, and of the end by the state alone.
    for (const source of element.querySelectorAll('source'))
      source.addEventListener('error', () => setTimeout(() => broken() && fail()));
  }

  // Music behind a page, which the engine has no element for.
  function playBehind(element, url) {
    done.add(element);
    const audio = document.createElement('audio');
    audio.src = url;
    audio.autoplay = true;
    const loop = (element.getAttribute('loop') || '').toLowerCase();
    audio.loop = loop === '-1' || loop === 'infinite';
    element.replaceWith(audio);
    watchPlayable(audio);
  }

  function look(element) {
    if (done.has(element))
      return;
    if (element.localName === 'video' || element.localName === 'audio')
      return watchPlayable(element);
    const url = sourceOf(element);
    const kind = url ? kindOf(url) : null;
    if (element.localName === 'bgsound') {
      if (url && kind && kind[1])
        playBehind(element, url);
      else if (url)
        replace(element, url, kind ? kind[0] : '声音');
      return;
    }
    if (element.localName === 'iframe') {
      if (kind && !kind[1])
        replace(element, url, kind[0]);
      return;
    }
    const plugIn = plugInOf(element);
    if (element.localName === 'applet')
      return replace(element, '', 'Java 小程序');
    if (kind)
      return kind[1] ? playInstead(element, url, kind[0]) : replace(element, url, kind[0]);
    if (plugIn && !isShown(element))
      replace(element, url, plugIn);
  }

  // A player for what the engine may have the decoder of.
  function playInstead(element, url, kind) {
    if (isUnseen(element))
      return playBehind(element, url);
    const size = sizeOf(element);
    const player = document.createElement(/音频|声音/.test(kind) ? 'audio' : 'video');
    player.controls = true;
    player.src = url;
    player.style.cssText = 'width:' + size.width + ';height:' + size.height;
    player.autoplay = /^(true|1|-1)$/i.test(element.getAttribute('autostart') || '');
    done.add(element);
    element.replaceWith(player);
    watchPlayable(player);
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

  lookBelow(document);
  // Pages of that time write their players by script.
  new MutationObserver((changes) => {
    for (const change of changes)
      change.addedNodes.forEach((node) => node.isConnected && lookBelow(node));
  }).observe(document, {subtree: true, childList: true});
})
