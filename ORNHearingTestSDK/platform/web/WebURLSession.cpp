#include <ORNHearingTestSDK/platform/web/WebURLSession.h>

#include <emscripten/emscripten.h>

#include <memory>
#include <utility>
#include <nlohmann/json.hpp>

// clang-format off
EM_JS(void, orn_web_fetch, (const char* request, const char* body, int length, void* handler), {
  const { url, method, headers, timeout } = JSON.parse(UTF8ToString(request));
  const bytes = HEAPU8.slice(body, body + length);
  const abort = new AbortController();
  const timer = setTimeout(() => abort.abort(), timeout);
  const done = (isError, data) => {
    clearTimeout(timer);
    const at = _malloc(data.length + 1);
    HEAPU8.set(data, at);
    _orn_web_replied(handler, isError, at, data.length);
    _free(at);
  };
  const hasBody = length > 0 && !["GET", "HEAD"].includes(method.toUpperCase());
  // Answers from a promise and never from within this call, even where fetch itself throws.
  Promise.resolve()
    .then(() => fetch(url, { method, headers, body: hasBody ? bytes : undefined, signal: abort.signal }))
    .then((reply) => reply.arrayBuffer())
    .then((data) => done(0, new Uint8Array(data)))
    .catch((error) => {
      const why = abort.signal.aborted ? "the request timed out" : String(error.message);
      done(1, new TextEncoder().encode(why));
    });
});
// clang-format on

extern "C" EMSCRIPTEN_KEEPALIVE void orn_web_replied(void* handler, int isError, const char* bytes, int length) {
  const std::unique_ptr<orn::URLSession::CompletionHandler> done(
      static_cast<orn::URLSession::CompletionHandler*>(handler));
  std::string text(bytes, static_cast<std::size_t>(length));
  constexpr int longestReply = 16 << 20;
  if (isError != 0) {
    for (char& c : text) c = static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    (*done)({{}, orn::Error{"transport", 1, std::move(text)}});
  } else if (length > longestReply) {
    (*done)({{}, orn::Error{"transport", 2, "the reply is longer than 16 MiB"}});
  } else {
    (*done)({std::move(text), {}});
  }
}

namespace orn {

void WebURLSession::dataTask(URLRequest request, CompletionHandler completionHandler) {
  // Headers as pairs: a name may occur more than once.
  const nlohmann::json described = {{"url", request.url},
                                    {"method", request.method},
                                    {"headers", request.headers},
                                    {"timeout", request.timeout.count()}};
  orn_web_fetch(described.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace).c_str(), request.body.data(),
                static_cast<int>(request.body.size()), new CompletionHandler(std::move(completionHandler)));
}

}  // namespace orn
