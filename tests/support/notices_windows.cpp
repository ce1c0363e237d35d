// Message boxes are found among all windows by their process and class. Window messages read their
// text and press their buttons.
#include "support/notices_windows.h"

#include <atomic>
#include <iterator>
#include <thread>

#include "support/notices.h"

namespace korvex::test {

namespace {

// The class of all message boxes, and the number of the control that holds a box's text.
constexpr const wchar_t* BoxClass = L"#32770";
constexpr int TextControl = 0xFFFF;

// A box that does not answer within this time is broken. A box that only seems to hang is waited
// for, without SMTO_ABORTIFHUNG: a thread seems hung if it has computed for seconds before it shows
// a box.
constexpr UINT AnswerWithinMilliseconds = 60000;

struct Box {
  DWORD process = 0;
  HWND window = nullptr;
};

bool HasClass(HWND window, const wchar_t* name) {
  wchar_t found[32] = {};
  GetClassNameW(window, found, static_cast<int>(std::size(found)));
  return std::wstring(found) == name;
}

// For EnumWindows: stops at the visible message box of the process. A box becomes visible after all
// its controls have been created.
BOOL CALLBACK FindBox(HWND window, LPARAM wanted) {
  Box& box = *reinterpret_cast<Box*>(wanted);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != box.process || !IsWindowVisible(window) || !HasClass(window, BoxClass)) {
    return TRUE;
  }
  box.window = window;
  return FALSE;
}

// For EnumChildWindows: collects the buttons.
BOOL CALLBACK GatherButtons(HWND window, LPARAM list) {
  if (HasClass(window, L"Button")) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  }
  return TRUE;
}

// For EnumChildWindows: stops at an icon. Every box has a control for one, most without an icon in
// it.
BOOL CALLBACK FindIcon(HWND window, LPARAM found) {
  if (!HasClass(window, L"Static")) return TRUE;
  DWORD_PTR icon = 0;
  SendMessageTimeoutW(window, STM_GETICON, 0, 0, SMTO_NORMAL, AnswerWithinMilliseconds, &icon);
  *reinterpret_cast<bool*>(found) = icon != 0;
  return icon == 0 ? TRUE : FALSE;
}

std::string NarrowToUtf8(const wchar_t* text, int units) {
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, units, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, units, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

// The window's text in UTF-8. It is read by a message, because GetWindowText cannot read controls
// of another process.
std::string ReadText(HWND window) {
  wchar_t text[1024] = {};
  DWORD_PTR units = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text),
                      SMTO_NORMAL, AnswerWithinMilliseconds, &units);
  return NarrowToUtf8(text, static_cast<int>(units));
}

// Title and text, then a line for each thing that a box of the program must not have.
std::string DescribeBox(HWND window, const std::vector<HWND>& buttons) {
  const HWND text = GetDlgItem(window, TextControl);
  std::string description = ReadText(window) + "\n" + (text ? ReadText(text) : "(no text)");
  if (buttons.size() != 1 || ReadText(buttons[0]) != "OK") {
    description += "\nbuttons:";
    for (HWND button : buttons) description += ' ' + ReadText(button);
  }
  bool hasIcon = false;
  EnumChildWindows(window, FindIcon, reinterpret_cast<LPARAM>(&hasIcon));
  if (hasIcon) description += "\nhas an icon";
  if (GetWindow(window, GW_OWNER) != nullptr) description += "\nhas an owner";
  return description;
}

}  // namespace

HWND FindNotice(DWORD process) {
  Box box;
  box.process = process;
  EnumWindows(FindBox, reinterpret_cast<LPARAM>(&box));
  return box.window;
}

void AnswerNotice(DWORD process, std::vector<std::string>& notices) {
  HWND box = FindNotice(process);
  if (box == nullptr) return;
  std::vector<HWND> buttons;
  EnumChildWindows(box, GatherButtons, reinterpret_cast<LPARAM>(&buttons));
  notices.push_back(DescribeBox(box, buttons));
  if (buttons.empty()) return;
  // Sent, not posted: when the call returns, the box is closed or closing and is not found again.
  DWORD_PTR ignored = 0;
  const LRESULT clicked = SendMessageTimeoutW(buttons[0], BM_CLICK, 0, 0, SMTO_NORMAL,
                                              AnswerWithinMilliseconds, &ignored);
  while (clicked != 0 && IsWindow(box)) Sleep(1);
}

std::vector<std::string> CollectNotices(const std::function<void()>& work) {
  std::vector<std::string> notices;
  std::atomic<bool> done{false};
  std::thread reader([&] {
    while (!done) {
      AnswerNotice(GetCurrentProcessId(), notices);
      Sleep(LookEveryMilliseconds);
    }
  });
  work();
  done = true;
  reader.join();
  return notices;
}

}  // namespace korvex::test
