// The relay of provider data between the windows of the registry. The windows have only an engine, a player and a
// handler, because the relay uses nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "flutter_host/byte_stream.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"
#include "tests/support/line_order.h"
#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const InterfaceCall kRequested{"providerDataRequested", Value()};

class RelayRequests : public testing::Test {
 protected:
  // Destroys the last window first, because a window removes itself from the list.
  ~RelayRequests() override {
    while (!GetWindowRegistry().empty()) {
      const std::unique_ptr<VantroWindow> window = std::move(GetWindowRegistry().back());
      GetWindowRegistry().pop_back();
    }
  }

  void OpenWindows(int count) {
    for (int i = 0; i < count; ++i) {
      auto window = std::make_unique<VantroWindow>(GetModuleHandleW(nullptr));
      window->flutterEngine_ = std::make_unique<FlutterEngine>();
      ASSERT_TRUE(window->flutterEngine_->Initialize(parent_.get()));
      engines_.push_back(loopback_.NewestEngine());
      window->vlcPlayer_ = std::make_unique<VLCPlayer>();
      window->methodChannelHandler_ = std::make_unique<MethodChannelHandler>(
          window->flutterEngine_.get(), window->vlcPlayer_.get(), GetWindowRegistry().empty(), window.get());
      RegisterWindow(std::move(window));
    }
    interface_.ClearCalls();
  }
  // Puts the window into the state that it has in the registry after the user closes it.
  void Close(size_t window) { GetWindowRegistry()[window]->isClosing_ = true; }
  Answer Ask(size_t window, const char* method, const Value& arguments = Value()) {
    return interface_.Ask(engines_[window], kPlayerChannel, method, arguments);
  }
  std::vector<InterfaceCall> Calls(size_t window) const { return interface_.Calls(engines_[window]); }

  ScratchFolder scratch_;
  TemporaryFolderAt temporaryFolder_{scratch_.path()};
  LogCapture log_;
  ScriptedVlc vlc_;
  Loopback loopback_;
  InterfaceEnd interface_{loopback_};
  ParentWindow parent_{kParentWidth, kParentHeight};
  std::vector<int> engines_;
};

Value Chunk(int number) { return MapOf({{"chunkType", "channels"}, {"number", Value(number)}}); }

Value NestedChunk() {
  return MapOf({
      {"chunkType", "channels"},
      {"null", Value()},
      {"flag", Value(true)},
      {"int", Value(-1)},
      {"long", Value(int64_t{1} << 60)},
      {"real", Value(0.1)},
      {"bytes", Value(std::vector<uint8_t>{0, 255})},
      {"ints", Value(std::vector<int32_t>{-1, 2})},
      {"longs", Value(std::vector<int64_t>{})},
      {"reals", Value(std::vector<double>{1e300})},
      {"floats", Value(std::vector<float>{0.5f})},
      {"list", ListOf({Value(1), MapOf({{"deep", ListOf({Value("x"), Value()})}})})},
      {"map", MapOf({{Value(7), Value("by number")}, {Value(), Value("by null")}})},
  });
}

TEST_F(RelayRequests, WindowInfoDistinguishesTheFirstWindowFromTheOthers) {
  OpenWindows(3);
  for (size_t window = 0; window < 3; ++window) {
    const auto handler = reinterpret_cast<intptr_t>(GetWindowRegistry()[window]->methodChannelHandler_.get());
    EXPECT_EQ(Ask(window, "getWindowInfo"),
              Success(MapOf({{"isMasterWindow", Value(window == 0)}, {"windowId", Value(int64_t{handler})}})));
  }
  EXPECT_EQ(log_.Count("DEBUG GetWindowInfo: Returning window information"), 3);
}

TEST_F(RelayRequests, WindowIdsOfTwoOpenWindowsDiffer) {
  OpenWindows(2);
  EXPECT_NE(Describe(Ask(0, "getWindowInfo").value), Describe(Ask(1, "getWindowInfo").value));
}

TEST_F(RelayRequests, WithOneWindowOnlySendingRepliesTrueAndSendsNothing) {
  OpenWindows(1);
  EXPECT_EQ(Ask(0, "sendProviderData", Chunk(1)), kTrue);
  EXPECT_THAT(Calls(0), IsEmpty());
}

TEST_F(RelayRequests, WithOneWindowOnlyARequestReachesItself) {
  OpenWindows(1);
  EXPECT_EQ(Ask(0, "requestProviderData"), kTrue);
  EXPECT_THAT(Calls(0), ElementsAre(kRequested));
}

TEST_F(RelayRequests, WithAnEmptyRegistryThereIsNoMaster) {
  FlutterEngine engine;
  ASSERT_TRUE(engine.Initialize(parent_.get()));
  VLCPlayer player;
  MethodChannelHandler handler(&engine, &player, true, nullptr);
  const NotedMessages messages;
  EXPECT_EQ(interface_.Ask(loopback_.NewestEngine(), kPlayerChannel, "requestProviderData"),
            Failure("NO_MASTER", "Master window not found", Value(false)));
  EXPECT_TRUE(InOrder(log_, {"ERROR RequestProviderData: No master window found", "(call) answer"}));
}

TEST_F(RelayRequests, FirstWindowWithoutAHandlerIsNoMaster) {
  OpenWindows(2);
  GetWindowRegistry()[0]->methodChannelHandler_.reset();
  EXPECT_EQ(Ask(1, "requestProviderData"), Failure("NO_MASTER", "Master window not found", Value(false)));
}

TEST_F(RelayRequests, RequestToAMasterWithoutAChannelIsStillTrue) {
  OpenWindows(2);
  VantroWindow& master = *GetWindowRegistry()[0];
  master.methodChannelHandler_ =
      std::make_unique<MethodChannelHandler>(master.flutterEngine_.get(), nullptr, true, &master);
  EXPECT_EQ(Ask(1, "requestProviderData"), kTrue);
  EXPECT_THAT(Calls(0), IsEmpty());
}

TEST_F(RelayRequests, RequestOfAClientReachesTheFirstWindowAlone) {
  OpenWindows(3);
  const NotedMessages messages;
  EXPECT_EQ(Ask(2, "requestProviderData"), kTrue);
  EXPECT_THAT(Calls(0), ElementsAre(kRequested));
  EXPECT_THAT(Calls(1), IsEmpty());
  EXPECT_THAT(Calls(2), IsEmpty());
  EXPECT_TRUE(InOrder(log_, {"INFO RequestProviderData: Client window requesting provider data from master",
                             "INFO RequestProviderData: Sending request to master window",
                             "(call) call of the interface", "(call) answer"}));
}

TEST_F(RelayRequests, ChunkIsLoggedBeforeItIsRefusedOrSent) {
  OpenWindows(2);
  const NotedMessages messages;
  Ask(0, "sendProviderData");
  EXPECT_TRUE(InOrder(log_, {"ERROR SendProviderDataDirect: Invalid arguments", "(call) answer"}));
  Ask(0, "sendProviderData", MapOf({}));
  EXPECT_TRUE(InOrder(log_, {"(call) answer", "ERROR SendProviderDataDirect: Missing chunk type", "(call) answer"}));
  Ask(0, "sendProviderData", MapOf({{"chunkType", "part"}}));
  EXPECT_TRUE(InOrder(log_, {"INFO SendProviderDataDirect: Broadcasting part chunk directly",
                             "INFO BroadcastEncodableToClientWindows: Broadcasting 'providerDataReceived'",
                             "(call) call of the interface", "(call) answer"}));
}

TEST_F(RelayRequests, ChunkWithoutATypeIsAnError) {
  OpenWindows(2);
  const Answer error = Failure("INVALID_CHUNK", "Chunk type is missing", Value(false));
  EXPECT_EQ(Ask(0, "sendProviderData", MapOf({{"chunkType", Value(7)}})), error);
  EXPECT_EQ(Ask(0, "sendProviderData", MapOf({{"chunkType", ""}})), error);
  EXPECT_EQ(Ask(0, "sendProviderData", MapOf({{"ChunkType", "channels"}})), error);
  EXPECT_THAT(Calls(1), IsEmpty());
  EXPECT_EQ(log_.Count("ERROR SendProviderDataDirect: Missing chunk type"), 3);
}

TEST_F(RelayRequests, ChunkThatNestsTooDeeplyReachesNoClient) {
  OpenWindows(2);
  Value nested;
  for (int level = 0; level < ByteBufferStreamReader::kMaximumNesting; ++level) nested = ListOf({nested});
  EXPECT_EQ(Ask(0, "sendProviderData", MapOf({{"chunkType", "channels"}, {"nested", nested}})), NotImplemented());
  EXPECT_THAT(Calls(1), IsEmpty());
}

TEST_F(RelayRequests, ChunkThatIsNoMapIsAnError) {
  OpenWindows(2);
  const Answer error = Failure("INVALID_ARGUMENTS", "Arguments must be a map", Value(false));
  EXPECT_EQ(Ask(0, "sendProviderData", ListOf({Value("chunkType")})), error);
  EXPECT_EQ(Ask(0, "sendProviderData"), error);
  EXPECT_EQ(log_.Count("ERROR SendProviderDataDirect: Invalid arguments"), 2);
}

TEST_F(RelayRequests, NestedChunkArrivesEqualAtEightClients) {
  OpenWindows(9);
  EXPECT_EQ(Ask(0, "sendProviderData", NestedChunk()), kTrue);
  EXPECT_THAT(Calls(0), IsEmpty());
  for (size_t client = 1; client < 9; ++client) {
    EXPECT_THAT(Calls(client), ElementsAre(InterfaceCall{"providerDataReceived", NestedChunk()})) << client;
  }
  EXPECT_EQ(log_.Count("INFO SendProviderDataDirect: Master window sending raw data to clients"), 1);
  EXPECT_EQ(log_.Count("INFO SendProviderDataDirect: Broadcasting channels chunk directly"), 1);
}

TEST_F(RelayRequests, ChunksArriveInTheOrderInWhichTheyWereSent) {
  OpenWindows(3);
  std::vector<InterfaceCall> sent;
  for (int number = 0; number < 20; ++number) {
    Ask(0, "sendProviderData", Chunk(number));
    sent.push_back({"providerDataReceived", Chunk(number)});
  }
  EXPECT_EQ(Calls(1), sent);
  EXPECT_EQ(Calls(2), sent);
}

TEST_F(RelayRequests, BothClientsReceiveWhatOneAskedFor) {
  OpenWindows(3);
  Ask(1, "requestProviderData");
  Ask(0, "sendProviderData", Chunk(1));
  EXPECT_THAT(Calls(1), ElementsAre(InterfaceCall{"providerDataReceived", Chunk(1)}));
  EXPECT_THAT(Calls(2), ElementsAre(InterfaceCall{"providerDataReceived", Chunk(1)}));
}

TEST_F(RelayRequests, ChunkOfAClientReachesAllClientsAndNotTheMaster) {
  OpenWindows(3);
  EXPECT_EQ(Ask(1, "sendProviderData", Chunk(1)), kTrue);
  EXPECT_THAT(Calls(0), IsEmpty());
  EXPECT_EQ(Calls(1).size(), 1u);
  EXPECT_EQ(Calls(2).size(), 1u);
}

TEST_F(RelayRequests, FirstWindowStaysTheMasterAfterItIsClosed) {
  OpenWindows(2);
  Close(0);
  EXPECT_EQ(Ask(1, "requestProviderData"), kTrue);
  EXPECT_THAT(Calls(0), ElementsAre(kRequested));
}

TEST_F(RelayRequests, ClosedClientIsStillSentTo) {
  OpenWindows(3);
  Close(1);
  EXPECT_EQ(Ask(0, "sendProviderData", Chunk(1)), kTrue);
  EXPECT_EQ(Calls(1).size(), 1u);
}

TEST_F(RelayRequests, ChunkIsSentOnBeforeItsSenderIsAnswered) {
  OpenWindows(2);
  const PendingAtCalls pending(loopback_);
  Ask(0, "sendProviderData", Chunk(1));
  EXPECT_THAT(pending.Counts(), ElementsAre(1));
}

}  // namespace
}  // namespace vantro::test
