#pragma once

namespace orn {

/// Removes the cached calibration of the earphones, one file of the documents folder; the next test by earphones asks
/// the service for it. Main thread.
///
/// For whoever writes a host: the library answers setEarPlugModel() from that file where it exists, and then never
/// calls back, since only an answer of the service does. The device selection waits for that call, so with the file in
/// place a tap on the earphone row opens no test and leaves the row dead. A host that wants the row to work removes the
/// file at its start, and after each answer of the service that may have written it anew. The price is that earphones
/// can't be tested while the service is out of reach. The audiometer's cache calls back; leave it alone.
void clearEarphoneCache();

}  // namespace orn
