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
using Keep = std::optional<std::string> (*)(const ServiceReply&, const json& dictionary);

std::optional<std::string> bytesAsTheyCame(const ServiceReply& reply, const json& /*dictionary*/) { return reply.body; }

std::optional<std::string> asPropertyList(const ServiceReply& reply, const json& dictionary) {
  return reply.envelopeError ? std::nullopt : propertyListOf(dictionary);
}

/// What the completion is told of a reply. Records of one with an error are neither assigned nor kept.
using Judge = std::function<std::optional<Error>(const ServiceReply&, const Reply& records)>;

/// The session's own error alone: a refusal, and what does not parse, count as no error.
std::optional<Error> sessionErrorOf(const ServiceReply& reply, const Reply& /*records*/) { return reply.sessionError; }

FormFields fieldsOf(OutputPath path, const std::string& device) {
  return {{"correct_name", ORNDeviceCorrect::platform()},
          {path == OutputPath::Audiometer ? "mac" : "earplug_model", device},
          {"appkey", appKeyOrEmpty()}};
}

void askService(const FormFields& fields, const std::optional<std::string>& path, Keep keep, const Judge& judge,
                CalibrationAssignment assign, CalibrationCompletion completion) {
  URLRequest request = serviceRequest("user/findSdkDeviceValue");
  setFormBody(request, fields);
  const Platform& platform = Platform::current();
  sendRequest(std::move(request),
              [path, keep, judge, files = platform.fileManager, main = MainQueue::current(), assign = std::move(assign),
               completion = std::move(completion)](const ServiceReply& reply, const json& dictionary) mutable {
                const Reply records = reply.body ? ORNDeviceCorrect::initWithDictionary(dictionary) : nullptr;
                const std::optional<Error> error = judge(reply, records);
                if (!error && records && path && records->rspCode() == 0) {
                  const auto kept = keep(reply, dictionary);
                  if (kept) files->writeAtomically(*path, bytesOf(*kept));
                }
                main.dispatchAsync([records, assign = std::move(assign), completion = std::move(completion), error] {
                  if (!error && records) assign(*records);
                  if (completion) completion(error);
                });
              });
}

/// The records of a cache file; null if it holds none.
Reply cachedRecords(OutputPath path, const std::optional<std::string>& file) {
  const auto cached = contentsOf(file);
  if (!cached) return nullptr;
  if (path == OutputPath::Audiometer) return ORNDeviceCorrect::parse(std::string(cached->begin(), cached->end()));
  const auto dictionary = dictionaryOfPropertyList(*cached);
  return dictionary ? ORNDeviceCorrect::initWithDictionary(*dictionary) : nullptr;
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
  askService(fieldsOf(OutputPath::Audiometer, address), path, bytesAsTheyCame, sessionErrorOf, std::move(assign),
             std::move(completion));
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
  askService(fieldsOf(OutputPath::Earphones, model), path, asPropertyList, sessionErrorOf, std::move(assign),
             std::move(completion));
}

void fetchCalibrationInFull(OutputPath path, const std::string& device, const std::vector<std::string>& hzs,
                            CalibrationAssignment assign, CalibrationCompletion completion) {
  const bool isAudiometer = path == OutputPath::Audiometer;
  const auto file = pathInDocuments(isAudiometer ? audiometerCacheName("", device) : earphoneCacheName(device));
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
  askService(fieldsOf(path, device), file, isAudiometer ? bytesAsTheyCame : asPropertyList, judge, std::move(assign),
             std::move(completion));
}

}  // namespace orn
