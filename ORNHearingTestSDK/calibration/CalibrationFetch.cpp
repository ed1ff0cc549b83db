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

/// Where the reply for a device is kept; nothing where there is no documents folder.
std::optional<std::string> cacheFile(OutputPath path, const std::string& device, const std::string& prefix = "") {
  const std::string folder = Platform::current().fileManager->documentsDirectory();
  if (folder.empty()) return std::nullopt;
  return folder + "/" +
         (path == OutputPath::Audiometer ? audiometerCacheName(prefix, device) : earphoneCacheName(device));
}

/// The records of a cache file; null if it holds none.
Reply cachedRecords(OutputPath path, const std::optional<std::string>& file) {
  const auto cached = file ? Platform::current().fileManager->contents(*file) : std::nullopt;
  if (!cached) return nullptr;
  if (path == OutputPath::Earphones) {
    const auto dictionary = dictionaryOfPropertyList(*cached);
    return dictionary ? ORNDeviceCorrect::initWithDictionary(*dictionary) : nullptr;
  }
  std::optional<Error> error;
  const json dictionary = parseObject(std::string(cached->begin(), cached->end()), error);
  return error ? nullptr : ORNDeviceCorrect::initWithDictionary(dictionary);
}

/// What of a reply is kept, if anything: an audiometer's as it came, one for earphones as a property list.
std::optional<std::string> keptForm(OutputPath path, const ServiceReply& reply, const json& dictionary) {
  if (path == OutputPath::Audiometer) return reply.body;
  return reply.envelopeError ? std::nullopt : propertyListOf(dictionary);
}

/// What the completion is told of a reply. Records of one with an error are neither assigned nor kept.
using Judge = std::function<std::optional<Error>(const ServiceReply&, const Reply& records)>;

/// The session's own error alone: a refusal, and what does not parse, count as no error.
std::optional<Error> sessionErrorOf(const ServiceReply& reply, const Reply& /*records*/) { return reply.sessionError; }

void askService(OutputPath path, const std::string& device, const std::optional<std::string>& file, const Judge& judge,
                CalibrationAssignment assign, CalibrationCompletion completion) {
  URLRequest request = serviceRequest("user/findSdkDeviceValue");
  setFormBody(request, {{"correct_name", ORNDeviceCorrect::platform()},
                        {path == OutputPath::Audiometer ? "mac" : "earplug_model", device},
                        {"appkey", appKeyOrEmpty()}});
  sendRequest(std::move(request),
              [path, file, judge, files = Platform::current().fileManager, main = MainQueue::current(),
               assign = std::move(assign),
               completion = std::move(completion)](const ServiceReply& reply, const json& dictionary) mutable {
                const Reply records = reply.body ? ORNDeviceCorrect::initWithDictionary(dictionary) : nullptr;
                const std::optional<Error> error = judge(reply, records);
                if (!error && records && file && records->rspCode() == 0) {
                  if (const auto kept = keptForm(path, reply, dictionary)) {
                    files->writeAtomically(*file, {reinterpret_cast<const std::uint8_t*>(kept->data()), kept->size()});
                  }
                }
                main.dispatchAsync([records, assign = std::move(assign), completion = std::move(completion), error] {
                  if (!error && records) assign(*records);
                  if (completion) completion(error);
                });
              });
}

}  // namespace

void fetchAudiometerCalibration(const std::string& filePrefix, const std::string& address, CalibrationAssignment assign,
                                CalibrationCompletion completion) {
  const auto file = cacheFile(OutputPath::Audiometer, address, filePrefix);
  if (const Reply cached = cachedRecords(OutputPath::Audiometer, file); cached && cached->rspCode() == 0) {
    assign(*cached);
    if (completion) completion(std::nullopt);
    return;
  }
  askService(OutputPath::Audiometer, address, file, sessionErrorOf, std::move(assign), std::move(completion));
}

void fetchEarphoneCalibration(const std::string& model, CalibrationAssignment assign,
                              CalibrationCompletion completion) {
  const auto file = cacheFile(OutputPath::Earphones, model);
  if (const Reply cached = cachedRecords(OutputPath::Earphones, file)) {
    if (cached->rspCode() == 0) assign(*cached);
    return;  // without the completion: only an answer of the service calls it, which is meant, see docs/BEHAVIOURS.md
  }
  askService(OutputPath::Earphones, model, file, sessionErrorOf, std::move(assign), std::move(completion));
}

void fetchCalibrationInFull(OutputPath path, const std::string& device, const std::vector<std::string>& hzs,
                            CalibrationAssignment assign, CalibrationCompletion completion) {
  const auto file = cacheFile(path, device);
  if (const Reply cached = cachedRecords(path, file); cached && isCalibration(path, *cached, hzs)) {
    return MainQueue::current().dispatchAsync([cached, assign, completion] {
      assign(*cached);
      if (completion) completion(std::nullopt);
    });
  }
  const auto judge = [path, hzs](const ServiceReply& reply, const Reply& records) -> std::optional<Error> {
    if (reply.failure()) return reply.failure();
    if (records && isCalibration(path, *records, hzs)) return std::nullopt;
    return Error{kNoCalibrationDomain, 0, "the service's reply has no calibration for a test by this device"};
  };
  askService(path, device, file, judge, std::move(assign), std::move(completion));
}

}  // namespace orn
