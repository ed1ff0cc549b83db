#pragma once

#include <QtCore/QByteArray>

#include <ORNHearingTestSDK/results/FinishedTest.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

/// A report of a finished test that a person can print, as the contents of a PDF file: one page of A4 in Chinese, with
/// the audiograms of both ears, their thresholds as a table, loss and verdict of each, the date, the device, and
/// whether the level of the tones was verified. Needs a QApplication, no display, and a platform in force. Main thread.
ORN_SCREENS_EXPORT QByteArray printableReport(const FinishedTest& test);

}  // namespace orn
