#pragma once

#include <windows.h>
#include <ocidl.h>

#include <exception>
#include <optional>
#include <string>

#include "about/ticker.h"
#include "platform/about_icon.h"
#include "platform/about_text.h"
#include "platform/pane_scroller.h"
#include "platform/thread_modality.h"

namespace zepkit10 {

/// What an about window shows.
struct AboutContent {
  std::u16string caption;
  std::u16string first_line;
  Microsoft::WRL::ComPtr<IPictureDisp> icon;  // see AboutIcon
  std::optional<std::u16string> lines;        // line feeds between them
};

/// An about window, modal to the thread. What the system refuses is raised as error 7 or 361.
class AboutWindow {
 public:
  explicit AboutWindow(const AboutContent& content);
  ~AboutWindow();
  AboutWindow(const AboutWindow&) = delete;
  AboutWindow& operator=(const AboutWindow&) = delete;

  /// Shows the window and dispatches the thread's messages until the window is closed, by its user
  /// or because the thread is told to quit.
  void Run();

 private:
  static INT_PTR CALLBACK Receive(HWND window, UINT message, WPARAM wide, LPARAM parameter);
  INT_PTR Handle(UINT message, WPARAM wide, LPARAM parameter);

  /// Makes the window, sized and in its place, and shows it unless that closed it.
  void Open();
  void Create();
  /// Goes to the screen of its owner, which tells the dots per inch. The place to be centred in.
  RECT EnterScreen();
  void Centre(const RECT& around);
  void Show();
  HWND Control(int id) const { return GetDlgItem(window_, id); }
  /// Lays everything out for dots per inch.
  void Arrange(int dpi);
  void Place(const AboutLayout& layout);
  void Close() noexcept;
  void OnDestroy() noexcept;
  void OnDpiChanged(int dpi, const RECT& proposed);

  void EraseBackground(HDC context) const;
  void DrawControl(const DRAWITEMSTRUCT& item);
  void MoveText();

  bool ScrollByKey(const MSG& message);
  void RepaintIf(bool scrolled) const;

  const std::u16string caption_;
  HWND window_ = nullptr;
  HWND moving_text_ = nullptr;
  AboutIcon icon_;
  AboutText text_;
  AboutLayout layout_;
  Ticker ticker_;
  PaneScroller scroller_;
  std::optional<ThreadModality> modality_;
  std::exception_ptr failure_;
  int dpi_ = 0;
};

}  // namespace zepkit10
