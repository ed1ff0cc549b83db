// Before main(): the documents folder, with what IndexedDB kept of it.
Module['preRun'] = [].concat(Module['preRun'] || [], () => {
  FS.mkdir('/documents');
  if (typeof indexedDB === 'undefined') return;
  FS.mount(IDBFS, {}, '/documents');
  addRunDependency('documents');
  FS.syncfs(true, (error) => {
    if (error) console.warn('no documents were kept: ' + error);
    removeRunDependency('documents');
  });
});
