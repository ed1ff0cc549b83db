#include "simulation/runs/BlockingURLSession.h"

#include <future>
#include <utility>

namespace orn::simulation {

void BlockingURLSession::dataTask(URLRequest request, CompletionHandler completionHandler) {
  std::promise<void> answered;
  session_->dataTask(std::move(request), [&](URLReply reply) {
    completionHandler(std::move(reply));
    answered.set_value();
  });
  answered.get_future().wait();
}

}  // namespace orn::simulation
