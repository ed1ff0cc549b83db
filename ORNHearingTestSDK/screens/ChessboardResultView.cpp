#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

#include <QtGui/QPainter>

namespace orn {
namespace {
constexpr std::int64_t kRows = 27;
}

ChessboardResultView::ChessboardResultView(QWidget* parent) : ChessboardBase(parent) {}

ChessboardResultView::~ChessboardResultView() = default;

std::optional<std::vector<std::string>> ChessboardResultView::askForHzs() {
  const auto source = datasouce_.lock();
  if (!source || !source->hzsOfChessboardView) return std::nullopt;
  return source->hzsOfChessboardView(*this);
}

void ChessboardResultView::drawRect(QPainter& painter) {
  layOut(kRows);
  painter.fillRect(rect(), Qt::white);
}

}  // namespace orn
