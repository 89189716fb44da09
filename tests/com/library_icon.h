#pragma once

#include <windows.h>

#include "com/component.h"

/// The file that carries the component, opened for its resources.
class ComponentFile {
 public:
  ComponentFile()
      : module_(
            LoadLibraryExW(component::ComponentPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)) {
    EXPECT_NE(nullptr, module_);
  }
  ~ComponentFile() { FreeLibrary(module_); }
  ComponentFile(const ComponentFile&) = delete;
  ComponentFile& operator=(const ComponentFile&) = delete;

  HMODULE get() const { return module_; }

  /// Draws the icon that is resource 1, in one of the widths that it has.
  void DrawIcon(HDC context, int width) const {
    const auto icon = static_cast<HICON>(
        LoadImageW(module_, MAKEINTRESOURCEW(1), IMAGE_ICON, width, width, LR_DEFAULTCOLOR));
    EXPECT_NE(nullptr, icon);
    EXPECT_TRUE(DrawIconEx(context, 0, 0, icon, width, width, 0, nullptr, DI_NORMAL));
    DestroyIcon(icon);
  }

 private:
  const HMODULE module_;
};
