// Elements of a page hide what a document itself has under their names, also from this world: an image named
// "body" would be taken for the body, and saved. So each property is had from the prototypes.
(function (plain) {
  'use strict';
  function propertyOf(target, name) {
    for (let from = Object.getPrototypeOf(target); from; from = Object.getPrototypeOf(from)) {
      const found = Object.getOwnPropertyDescriptor(from, name);
      if (found)
        return found;
    }
    return undefined;
  }

  return new Proxy(plain, {
    get: (target, name) => {
      const found = propertyOf(target, name);
      return found && found.get ? found.get.call(target) :
          found && typeof found.value === 'function' ? found.value.bind(target) : found && found.value;
    },
    set: (target, name, value) => {
      propertyOf(target, name).set.call(target, value);
      return true;
    },
  });
})(window.document)
