#pragma once

class QImage;

namespace orn {

/// Saves an image as a PNG file of its own, named after the moment, in the user's picture folder. False if that failed.
bool saveToPhotoAlbum(const QImage& image);

}  // namespace orn
