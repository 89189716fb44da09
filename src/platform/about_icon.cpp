#include "platform/about_icon.h"

#include <olectl.h>

#include "frame/errors.h"
#include "platform/automation/translate.h"
#include "platform/last_error.h"
#include "platform/own_icon.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

// For 96 dots per inch.
constexpr int kOwnWidth = 48;
constexpr int kMaxWidth = 128;

constexpr int kUnitsPerInch = 2540;

void Check(HRESULT result) {
  if (FAILED(result)) RaiseRefusal(result);
}

}  // namespace

ComPtr<IPictureDisp> MakeIconPicture() {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  const int width = GetSystemMetrics(SM_CXICON);
  SetLastError(0);
  description.icon.hicon = LoadOwnIcon(width);
  if (!description.icon.hicon) RaiseLastError();
  ComPtr<IPictureDisp> picture;
  const HRESULT made = OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE,
                                                reinterpret_cast<void**>(picture.GetAddressOf()));
  if (FAILED(made)) DestroyIcon(description.icon.hicon);
  Check(made);
  return picture;
}

AboutIcon::AboutIcon(IPictureDisp* picture) {
  if (!picture) return;
  ComPtr<IPicture> found;
  const HRESULT is_picture = picture->QueryInterface(IID_PPV_ARGS(&found));
  if (is_picture == E_NOINTERFACE || (SUCCEEDED(is_picture) && !found)) {
    RaiseRuntimeError(ZepVbErrors298To746::zepVbErrInvalidPicture);
  }
  Check(is_picture);
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  SHORT type = PICTYPE_NONE;
  Check(found->get_Type(&type));
  if (type == PICTYPE_NONE || type == PICTYPE_UNINITIALIZED) return;
  Check(found->get_Width(&width));
  Check(found->get_Height(&height));
  picture_ = std::move(found);
  picture_size_ = {width, height};
}

AboutIcon::~AboutIcon() {
  if (own_) DestroyIcon(own_);
}

Extent AboutIcon::SizeFor(int dpi) const {
  if (!picture_) return {Scaled(kOwnWidth, dpi), Scaled(kOwnWidth, dpi)};
  const auto pixels = [&](int length) { return MulDiv(length, dpi, kUnitsPerInch); };
  return FitInto({pixels(picture_size_.width), pixels(picture_size_.height)},
                 Scaled(kMaxWidth, dpi));
}

void AboutIcon::Draw(HDC context, Extent size) {
  if (picture_) {
    // A picture's rows begin at its lower edge.
    picture_->Render(context, 0, 0, size.width, size.height, 0, picture_size_.height,
                     picture_size_.width, -picture_size_.height, nullptr);
    return;
  }
  LoadOwn(size.width);
  if (own_) DrawIconEx(context, 0, 0, own_, size.width, size.height, 0, nullptr, DI_NORMAL);
}

void AboutIcon::LoadOwn(int width) {
  if (own_ && own_width_ == width) return;
  if (own_) DestroyIcon(own_);
  own_ = LoadOwnIcon(width);
  own_width_ = width;
}

}  // namespace zepkit10
