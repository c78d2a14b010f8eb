// docs/channel.md, of which a copy lies beside this program, against what the host does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "bridge/method_table.h"
#include "player/player_events.h"
#include "tests/unit/bridge/player_channel.h"

namespace vantro::test {
namespace {

using Cells = std::vector<std::string>;

// The rows of the tables between a heading and the next one, each as its cells without blanks around them. Headers and
// rules are left out: their first cell holds no code.
std::vector<Cells> Rows(const std::string& heading) {
  std::istringstream page(ReadFileBytes("channel.md"));
  std::vector<Cells> rows;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("#")) inside = line == heading;
    if (!inside || !line.starts_with("| `")) continue;
    Cells cells;
    std::istringstream text(line.substr(1));
    for (std::string cell; std::getline(text, cell, '|');) {
      const size_t begin = cell.find_first_not_of(' '), end = cell.find_last_not_of(' ');
      cells.push_back(begin == std::string::npos ? "" : cell.substr(begin, end - begin + 1));
    }
    rows.push_back(cells);
  }
  return rows;
}

// What stands in backquotes in a cell.
Cells Codes(const std::string& cell) {
  Cells codes;
  for (size_t at = 0; (at = cell.find('`', at)) != std::string::npos;) {
    const size_t end = cell.find('`', at + 1);
    codes.push_back(cell.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  return codes;
}

Cells FirstCodes(const std::string& heading) {
  Cells names;
  for (const Cells& row : Rows(heading)) names.push_back(Codes(row[0]).front());
  return names;
}

class ChannelPage : public PlayerChannelTest {};

TEST_F(ChannelPage, ListsTheMethodsOfTheTableInItsOrder) {
  Cells names;
  for (const ChannelMethod& method : ChannelMethods()) names.emplace_back(method.name);
  EXPECT_EQ(FirstCodes("## Player channel: requests"), names);
}

TEST_F(ChannelPage, TellsWhichRepliesAreAlwaysTrue) {
  int rows = 0;
  for (const Cells& row : Rows("## Player channel: requests")) {
    if (row[3] != "`true`, always") continue;
    ++rows;
    EXPECT_EQ(Ask(Codes(row[0]).front()), Success(Value(true))) << row[0];
  }
  EXPECT_GT(rows, 10);
}

TEST_F(ChannelPage, TellsTheErrorsOfBareRequests) {
  const Cells requests = {"setMedia",    "mvAddStream",      "mvReplaceActive",     "mvSetActiveIndex",
                          "mvSwapTiles", "toggleFullscreen", "requestProviderData", "sendProviderData"};
  for (const std::string& request : requests) {
    const Answer answer = Ask(request);
    const auto rows = Rows("## Player channel: errors");
    const auto isTold = [&](const Cells& row) {
      const bool details = row[2] == "`false`";
      return Codes(row[0]).front() == answer.code && Codes(row[1]).front() == answer.message &&
             details == (answer.value == Value(false)) &&
             row[3].find("`" + request + "`") != std::string::npos;
    };
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), isTold)) << request << ": " << answer;
  }
}

TEST_F(ChannelPage, TellsEveryEventOfThePlayer) {
  const Cells told = FirstCodes("## Player channel: calls to the interface");
  for (const PlayerEvent& event : kPlayerEvents) EXPECT_THAT(told, testing::Contains(event.method));
}

TEST_F(ChannelPage, TellsTheCallsThatRequestsMake) {
  for (const char* request : {"play", "getTracksInfo", "enableMultiView", "disableMultiView"}) Ask(request);
  const Cells told = FirstCodes("## Player channel: calls to the interface");
  EXPECT_EQ(interface_.Calls().size(), 5u);
  for (const std::string& name : interface_.CallNames()) EXPECT_THAT(told, testing::Contains(name));
}

}  // namespace
}  // namespace vantro::test
