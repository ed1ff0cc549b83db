#include <ORNHearingTestSDK/calibration/CalibrationFetch.h>

#include <memory>
#include <utility>
#include <vector>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/CalibrationCache.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/common/PropertyList.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

using nlohmann::json;
using Reply = std::shared_ptr<const ORNDeviceCorrect>;

/// Nothing where there is no documents folder.
std::optional<std::string> pathInDocuments(const std::string& name) {
  const std::string folder = Platform::current().fileManager->documentsDirectory();
  return folder.empty() ? std::nullopt : std::optional(folder + "/" + name);
}

std::optional<std::vector<std::uint8_t>> contentsOf(const std::optional<std::string>& path) {
  return path ? Platform::current().fileManager->contents(*path) : std::nullopt;
}

std::span<const std::uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// What of a reply is kept, if anything.
using Keep = std::function<std::optional<std::string>(const ServiceReply&, const json& dictionary)>;

void askService(const FormFields& fields, const std::optional<std::string>& path, const Keep& keep,
                CalibrationAssignment assign, CalibrationCompletion completion) {
  URLRequest request = serviceRequest("user/findSdkDeviceValue");
  setFormBody(request, fields);
  const Platform& platform = Platform::current();
  sendRequest(std::move(request),
              [path, keep, files = platform.fileManager, main = MainQueue::current(), assign = std::move(assign),
               completion = std::move(completion)](const ServiceReply& reply, const json& dictionary) mutable {
                Reply records;
                if (reply.body) {
                  records = ORNDeviceCorrect::initWithDictionary(dictionary);
                  const auto kept = path && records->rspCode() == 0 ? keep(reply, dictionary) : std::nullopt;
                  if (kept) files->writeAtomically(*path, bytesOf(*kept));
                }
                // The session's own error alone is handed on: what does not parse counts as no error.
                main.dispatchAsync([records, assign = std::move(assign), completion = std::move(completion),
                                    error = reply.sessionError] {
                  if (records) assign(*records);
                  if (completion) completion(error);
                });
              });
}

}  // namespace

void fetchAudiometerCalibration(const std::string& filePrefix, const std::string& address, CalibrationAssignment assign,
                                CalibrationCompletion completion) {
  const auto path = pathInDocuments(audiometerCacheName(filePrefix, address));
  if (const auto cached = contentsOf(path)) {
    std::optional<Error> error;
    const json dictionary = parseObject(std::string(cached->begin(), cached->end()), error);
    const Reply records = ORNDeviceCorrect::initWithDictionary(dictionary);
    if (!error && records->rspCode() == 0) {
      assign(*records);
      if (completion) completion(std::nullopt);
      return;
    }
  }
  askService(
      {{"correct_name", ORNDeviceCorrect::platform()}, {"mac", address}, {"appkey", appKeyOrEmpty()}}, path,
      [](const ServiceReply& reply, const json&) { return reply.body; }, std::move(assign), std::move(completion));
}

void fetchEarphoneCalibration(const std::string& model, CalibrationAssignment assign,
                              CalibrationCompletion completion) {
  const auto path = pathInDocuments(earphoneCacheName(model));
  if (const auto cached = contentsOf(path)) {
    if (const auto dictionary = dictionaryOfPropertyList(*cached)) {
      const Reply records = ORNDeviceCorrect::initWithDictionary(*dictionary);
      if (records->rspCode() == 0) assign(*records);
      return;  // without the completion: only an answer of the service calls it, and that is meant, see
               // docs/BEHAVIOURS.md
    }
  }
  askService(
      {{"correct_name", ORNDeviceCorrect::platform()}, {"earplug_model", model}, {"appkey", appKeyOrEmpty()}}, path,
      [](const ServiceReply& reply, const json& dictionary) {
        return reply.envelopeError ? std::nullopt : propertyListOf(dictionary);
      },
      std::move(assign), std::move(completion));
}

}  // namespace orn
