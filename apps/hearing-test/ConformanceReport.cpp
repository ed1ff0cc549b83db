#include "hearing-test/ConformanceReport.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/LevelScale.h>

#include "hearing-test/CommonOptions.h"

namespace orn {
namespace {

using simulation::ConformanceCell;
using Json = nlohmann::ordered_json;

double percent(double share) { return share * 100; }
double frequencyError(const ConformanceCell& cell) { return cell.tone->hz / cell.hz - 1; }

Json jsonOf(const std::optional<double>& value) { return value ? Json(*value) : Json(); }

Json jsonOf(const ConformanceCell& cell) {
  Json json{{"ear", cell.isLeft ? "left" : "right"}, {"hz", cell.hz}, {"db", cell.db}, {"level", jsonOf(cell.level)}};
  json["levelError"] = cell.level ? Json(cell.levelError()) : Json();
  if (cell.tone) {
    json["frequencyErrorPercent"] = percent(frequencyError(cell));
    json["distortionPercent"] = percent(cell.tone->distortion);
    json["riseSeconds"] = cell.tone->riseSeconds;
    json["fallSeconds"] = cell.tone->fallSeconds;
    json["overshoot"] = cell.tone->overshoot;
    json["seamPercent"] = percent(cell.tone->seam);
  }
  json["otherEar"] = jsonOf(cell.otherEar);
  json["clips"] = cell.clips;
  json["underResolution"] = cell.isUnderResolution;
  json["misses"] = cell.misses;
  return json;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

void printCell(const ConformanceCell& cell) {
  std::printf("%5s %5d %3d", cell.isLeft ? "left" : "right", cell.hz, cell.db);
  if (cell.tone && cell.level) {
    std::printf(" %7.2f %8.4f %7.2f %7.1f %7.1f %6.2f %7.2f", cell.levelError(), percent(frequencyError(cell)),
                percent(cell.tone->distortion), cell.tone->riseSeconds * 1000, cell.tone->fallSeconds * 1000,
                cell.tone->overshoot, percent(cell.tone->seam));
  } else {
    std::printf(" %55s", "no tone came out");
  }
  if (cell.otherEar) {
    std::printf(" %7.1f", *cell.otherEar);
  } else {
    std::printf(" %7s", "silent");
  }
  std::printf("  %s%s%s\n", cell.clips ? "CLIPS " : "", cell.isUnderResolution ? "UNDER-16-BITS " : "",
              joined(cell.misses).c_str());
}

/// The cells of which something is true, a line for each frequency and ear: "1000 Hz right: 15 20 dB".
void printCells(const ConformanceResult& result, const char* what,
                const std::function<bool(const ConformanceCell&)>& isTrue) {
  std::map<std::pair<std::int32_t, bool>, std::vector<std::string>> levels;
  std::size_t count = 0;
  for (const ConformanceCell& cell : result.cells) {
    if (!isTrue(cell)) continue;
    ++count;
    levels[{cell.hz, cell.isLeft}].push_back(std::to_string(cell.db));
  }
  std::printf("%-18s %3zu of %zu cells\n", what, count, result.cells.size());
  for (const auto& [column, rows] : levels) {
    std::printf("    %5d Hz %-5s: %s\n", column.first, column.second ? "left" : "right",
                rows.size() == std::size_t{kGridScale.rows} ? "every level" : (joined(rows) + " dB").c_str());
  }
}

bool misses(const ConformanceCell& cell, const std::string& limit) {
  return std::find(cell.misses.begin(), cell.misses.end(), limit) != cell.misses.end();
}

}  // namespace

std::string jsonReport(const std::vector<ConformanceResult>& results) {
  Json json{{"paths", Json::array()}};
  for (const ConformanceResult& result : results) {
    Json path{{"path", nameOf(result.path)}, {"cells", Json::array()}};
    for (const ConformanceCell& cell : result.cells) path["cells"].push_back(jsonOf(cell));
    json["paths"].push_back(std::move(path));
  }
  return json.dump(2);
}

void printReport(const ConformanceResult& result) {
  std::printf("%s\n", result.path == OutputPath::Audiometer ? "Audiometer: the stream" : "Earphones: the tone bank");
  std::printf("  ear    Hz  dB   level    freq     THD    rise    fall   over    seam   other  beyond the limits\n");
  std::printf("                 +dB       %%       %%      ms      ms     dB       %%   dB HL\n");
  for (const ConformanceCell& cell : result.cells) printCell(cell);
  std::printf("\n");
  printCells(result, "clip", [](const ConformanceCell& cell) { return cell.clips; });
  printCells(result, "under 16 bits", [](const ConformanceCell& cell) { return cell.isUnderResolution; });
  for (const char* limit : {"level", "frequency", "distortion", "rise", "fall", "overshoot", "seam"}) {
    printCells(result, (std::string("miss: ") + limit).c_str(),
               [limit](const ConformanceCell& cell) { return misses(cell, limit); });
  }
  std::printf("\n");
}

}  // namespace orn
