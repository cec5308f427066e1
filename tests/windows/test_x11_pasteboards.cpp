// SPDX-License-Identifier: MIT
#include <cmath>

#include "pasteboard_client.h"
#include "x11_fixture.h"

namespace cocoa {
namespace {

using test_support::PasteboardClient;
using testing::UnorderedElementsAre;

class X11Pasteboard : public X11Test {
 protected:
  /// The server serves its clients in any order: before another one acts, our offer must have reached it.
  void offer(std::string text, Pasteboard pasteboard = Pasteboard::copied) {
    system->offerText(pasteboard, std::move(text));
    settle();
  }
  /// What `program` gets when it asks for a target.
  void ask(const std::string& selection, const std::string& target) {
    program.ask(selection, target);
    ASSERT_TRUE(until([this] {
      program.serve();
      return program.answered();
    }));
  }
  /// What we get; none before the answer.
  struct Got {
    bool told = false;
    std::optional<std::string> text;
  };
  std::shared_ptr<Got> request(Pasteboard pasteboard = Pasteboard::copied) {
    auto got = std::make_shared<Got>();
    system->requestText(pasteboard, [got](std::optional<std::string> text) {
      EXPECT_FALSE(got->told);
      *got = {true, std::move(text)};
    });
    return got;
  }
  std::optional<std::string> requested(Pasteboard pasteboard = Pasteboard::copied) {
    const auto got = request(pasteboard);
    EXPECT_TRUE(until([&] {
      program.serve();
      return got->told;
    }));
    return got->text;
  }

  PasteboardClient program{server.display()};
};

TEST_F(X11Pasteboard, AnotherProgramGetsWhatIsOffered) {
  offer("0.5 \u00e9 \u221a");
  offer("other", Pasteboard::selected);
  ask("CLIPBOARD", "UTF8_STRING");
  EXPECT_EQ(program.bytes(), "0.5 \u00e9 \u221a");
  EXPECT_EQ(program.type(), "UTF8_STRING");
  ask("CLIPBOARD", "text/plain;charset=utf-8");
  EXPECT_EQ(program.bytes(), "0.5 \u00e9 \u221a");
  ask("CLIPBOARD", "STRING");
  EXPECT_EQ(program.bytes(), "0.5 \xe9 ?") << "Latin 1 has no root";
  EXPECT_EQ(program.type(), "STRING");
  ask("PRIMARY", "UTF8_STRING");
  EXPECT_EQ(program.bytes(), "other");
}

TEST_F(X11Pasteboard, TellsTheTargetsAndTheTimeThatItServes) {
  PlatformWindow& w = open();
  user.point(150, 100);
  user.press(1);
  ASSERT_TRUE(until([&] { return recorder.count("down") == 1; }));
  offer("1");
  ask("CLIPBOARD", "TARGETS");
  std::vector<uint32_t> atoms;
  for (const char* name : {"TARGETS", "TIMESTAMP", "UTF8_STRING", "text/plain;charset=utf-8", "STRING"})
    atoms.push_back(user.atom(name));
  EXPECT_THAT(program.words(), testing::UnorderedElementsAreArray(atoms));
  ask("CLIPBOARD", "TIMESTAMP");
  ASSERT_EQ(program.words().size(), 1U);
  const double click = recorder.of(WindowEventType::mouse_down).front().timestamp;
  EXPECT_EQ(program.words().front(), static_cast<uint32_t>(std::lround(click * 1000)));
  EXPECT_TRUE(w.viewable());
  user.release(1);
}

TEST_F(X11Pasteboard, RefusesOtherTargets) {
  offer("1");
  for (const char* target : {"image/png", "MULTIPLE", "COMPOUND_TEXT"}) {
    ask("CLIPBOARD", target);
    EXPECT_TRUE(program.refused()) << target;
  }
}

TEST_F(X11Pasteboard, GivesUpWhatAnotherProgramOffersInstead) {
  offer("ours");
  EXPECT_EQ(requested(), "ours");
  program.own_text("CLIPBOARD", "theirs");
  settle();
  EXPECT_EQ(requested(), "theirs");
}

TEST_F(X11Pasteboard, ALaterOfferReplacesTheEarlier) {
  system->offerText(Pasteboard::copied, "1");
  offer("2");
  ask("CLIPBOARD", "UTF8_STRING");
  EXPECT_EQ(program.bytes(), "2");
}

TEST_F(X11Pasteboard, TakesWhatAnotherProgramOffers) {
  program.own_text("CLIPBOARD", "0,25");
  EXPECT_EQ(requested(), "0,25");
  PasteboardClient second(server.display());
  program.own_text("PRIMARY", "selected");
  EXPECT_EQ(requested(Pasteboard::selected), "selected");
}

TEST_F(X11Pasteboard, TakesTheOldestKindOfTextFromProgramsThatKnowNoOther) {
  program.own("CLIPBOARD", [](const std::string& target) -> std::optional<PasteboardClient::Content> {
    if (target != "STRING")
      return std::nullopt;
    return PasteboardClient::Content{"STRING",
                                     "\xb1"
                                     "1"};
  });
  EXPECT_EQ(requested(), "\u00b11");
  EXPECT_EQ(program.requests(), 2);
}

TEST_F(X11Pasteboard, NobodyOffersNothing) {
  EXPECT_EQ(requested(), std::nullopt);
}

TEST_F(X11Pasteboard, AnOwnerThatRefusesOffersNothing) {
  program.own("CLIPBOARD", [](const std::string&) { return std::nullopt; });
  EXPECT_EQ(requested(), std::nullopt);
}

TEST_F(X11Pasteboard, TooMuchIsRefusedWholeOrInPieces) {
  program.own_text("CLIPBOARD", std::string(70000, '1'));
  EXPECT_EQ(requested(), std::nullopt);
  program.own("CLIPBOARD", [](const std::string&) {
    return PasteboardClient::Content{"INCR", std::string("\0\0\1\0", 4), 32};
  });
  EXPECT_EQ(requested(), std::nullopt);
  program.own_text("CLIPBOARD", std::string(60000, '1'));
  EXPECT_EQ(requested(), std::string(60000, '1'));
}

TEST_F(X11Pasteboard, OtherTypesThanTextAreRefused) {
  program.own("CLIPBOARD", [](const std::string&) {
    return PasteboardClient::Content{"image/png", "\x89PNG"};
  });
  EXPECT_EQ(requested(), std::nullopt);
}

TEST_F(X11Pasteboard, AnOwnerThatDoesNotAnswerIsGivenUpAndItsLateAnswerIsDropped) {
  program.own_text("CLIPBOARD", "late");
  const auto got = request();
  EXPECT_TRUE(until([&] { return got->told; }));
  EXPECT_EQ(got->text, std::nullopt);
  program.serve();
  settle();
  EXPECT_EQ(requested(), "late");
}

TEST_F(X11Pasteboard, SeveralRequestsHaveTheirOwnAnswers) {
  program.own_text("CLIPBOARD", "1");
  const auto first = request();
  const auto second = request(Pasteboard::selected);
  const auto third = request();
  EXPECT_TRUE(until([&] {
    program.serve();
    return first->told && second->told && third->told;
  }));
  EXPECT_EQ(first->text, "1");
  EXPECT_EQ(second->text, std::nullopt);
  EXPECT_EQ(third->text, "1");
}

TEST_F(X11Pasteboard, ARequestMayOutliveTheWindowSystem) {
  program.own_text("CLIPBOARD", "1");
  const auto got = request();
  system.reset();
  EXPECT_FALSE(got->told);
}

TEST_F(X11Pasteboard, WithoutAConnectionNothingIsOffered) {
  server.kill();
  ASSERT_TRUE(until([this] { return !system->connected(); }));
  system->offerText(Pasteboard::copied, "1");
  request();
  system->dispatch();
}

}  // namespace
}  // namespace cocoa
