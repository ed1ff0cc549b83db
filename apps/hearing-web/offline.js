// Keeps the page's files, so that once loaded it opens without a network; with one, it takes the newest files.
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
