// Keeps the page's files, so that it opens without a network once it has been loaded; with one, the newest ones count.
const kFiles = ['./', 'page.css', 'page.mjs', 'board.mjs', 'hearing_web.mjs', 'hearing_web.wasm', 'hearing_web.data', 'OutputWorklet.js'];

self.addEventListener('install', (event) => {
  event.waitUntil(caches.open('hearing-web').then((cache) => cache.addAll(kFiles)));
  self.skipWaiting();
});
self.addEventListener('activate', (event) => event.waitUntil(self.clients.claim()));
self.addEventListener('fetch', (event) => {
  if (event.request.method !== 'GET') return;
  event.respondWith(fetch(event.request).catch(() => caches.match(event.request, { ignoreSearch: true })));
});
