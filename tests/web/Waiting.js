// contracts.html replaces the first two by functions that suspend the program.
mergeInto(LibraryManager.library, {
  orn_test_wait: function(milliseconds) { throw new Error('not in a browser'); },
  orn_test_device: function(isThere) { throw new Error('not in a browser'); },
  orn_test_fill: function() {
    // To the last byte: ever shorter texts, each length as often as it still fits.
    let count = 0;
    for (let length = 1 << 20; length >= 1; length >>= 1) {
      try {
        for (;;) localStorage.setItem('full ' + count++, 'x'.repeat(length));
      } catch (error) {
        // Full for this length.
      }
    }
  },
  orn_test_empty: function() {
    for (const key of Object.keys(localStorage)) if (key.startsWith('full ')) localStorage.removeItem(key);
  },
});
