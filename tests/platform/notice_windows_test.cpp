// The notice as a message box: title and text in UTF-16, one OK button, no owner. The run waits for
// the answer.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/notice.h"
#include "support/notices.h"
#include "support/notices_windows.h"

namespace korvex {
namespace {

using test::CollectNotices;
using Texts = std::vector<std::string>;

TEST(Notice, ShowsTextsOfAllLengths) {
  const std::string chinese = "梁截面类型数字错误!";
  const std::string longText(300, 'x');
  for (const std::string& text : Texts{"File Read Error!", chinese, "1", longText}) {
    EXPECT_EQ(CollectNotices([&] { ShowNotice(text.c_str()); }), Texts{"Warning!\n" + text});
  }
}

TEST(Notice, FollowEachOther) {
  EXPECT_EQ(CollectNotices([] {
              ShowNotice("first");
              ShowNotice("second");
            }),
            (Texts{"Warning!\nfirst", "Warning!\nsecond"}));
}

TEST(Notice, HoldsTheRunUntilItIsAnswered) {
  std::atomic<bool> returned{false};
  bool returnedBefore = false;
  Texts seen;
  std::thread reader([&] {
    // Long after the box appeared, ShowNotice has still not returned.
    while (test::FindNotice(GetCurrentProcessId()) == nullptr) Sleep(test::LookEveryMilliseconds);
    Sleep(200);
    returnedBefore = returned;
    test::AnswerNotice(GetCurrentProcessId(), seen);
  });
  ShowNotice("wait");
  returned = true;
  reader.join();
  EXPECT_FALSE(returnedBefore);
  EXPECT_EQ(seen, Texts{"Warning!\nwait"});
}

// Tests the helper of these tests: it must recognise a box that is not the program's.
TEST(Notice, OtherBoxesAreToldApart) {
  EXPECT_EQ(CollectNotices([] { MessageBoxW(nullptr, L"text", L"title", MB_OKCANCEL); }),
            Texts{"title\ntext\nbuttons: OK Cancel"});
  EXPECT_EQ(CollectNotices([] { MessageBoxW(nullptr, L"text", L"title", MB_ICONWARNING); }),
            Texts{"title\ntext\nhas an icon"});
  EXPECT_EQ(CollectNotices([] {
              const HWND owner = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr,
                                                 nullptr, nullptr, nullptr);
              MessageBoxW(owner, L"text", L"title", MB_OK);
              DestroyWindow(owner);
            }),
            Texts{"title\ntext\nhas an owner"});
}

}  // namespace
}  // namespace korvex
