#pragma once

#include <windows.h>
#include <ocidl.h>
#include <wrl/client.h>

#include "about/about_layout.h"

namespace zepkit10 {

/// A picture of the library's icon, as large as the system's large icons. Error 7 or 361 where the
/// system refuses it.
Microsoft::WRL::ComPtr<IPictureDisp> MakeIconPicture();

/// The picture of an about window: a client's, or the library's icon.
class AboutIcon {
 public:
  /// Null, and a picture without an image, stand for the library's icon. Error 481 for an object
  /// that is no picture; a picture's own errors pass on.
  explicit AboutIcon(IPictureDisp* picture);
  ~AboutIcon();
  AboutIcon(const AboutIcon&) = delete;
  AboutIcon& operator=(const AboutIcon&) = delete;

  /// The size on a screen: a picture's own, reduced where it is large.
  Extent SizeFor(int dpi) const;

  /// What fails is not drawn.
  void Draw(HDC context, Extent size);

 private:
  void LoadOwn(int width);

  Microsoft::WRL::ComPtr<IPicture> picture_;
  Extent picture_size_;  // in 0.01 mm
  HICON own_ = nullptr;
  int own_width_ = 0;
};

}  // namespace zepkit10
