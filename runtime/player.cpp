#include "runtime/player.h"

#include <windows.h>

#include <mutex>
#include <thread>
#include <unordered_map>

#include "runtime/interface.h"
#include "runtime/log.h"
#include "runtime/real_library.h"
#include "runtime/stop.h"

namespace vantro::runtime {
namespace {

// Without this option libvlc 4 opens a top-level window for a player that has none.
constexpr char kShowNothing[] = ":vout=vdummy";

struct LivingPlayers {
  std::mutex lock;
  std::unordered_map<const void*, std::shared_ptr<Player>> byHandle;
};

// Never destroyed: libvlc's threads may outlive the statics.
LivingPlayers& Living() {
  static LivingPlayers* const living = new LivingPlayers;
  return *living;
}

bool EndsStart(int32_t type) {
  return type == kOpening || type == kPlaying || type == kEncounteredError || type == kStopped;
}

}  // namespace

PlayerHandle* Player::New(Instance* instance) {
  auto player = std::make_shared<Player>();
  player->real_ = Real().beneath->newPlayer(instance, player.get());
  if (!player->real_) return nullptr;
  auto* const handle = reinterpret_cast<PlayerHandle*>(player.get());
  RUNTIME_LOG("player %p made", static_cast<void*>(handle));
  const std::lock_guard guard(Living().lock);
  Living().byHandle.emplace(handle, std::move(player));
  return handle;
}

std::shared_ptr<Player> Player::Find(const void* handle) {
  const std::lock_guard guard(Living().lock);
  const auto found = Living().byHandle.find(handle);
  return found == Living().byHandle.end() ? nullptr : found->second;
}

void Player::Release(PlayerHandle* handle) {
  const std::shared_ptr<Player> player = Find(handle);
  if (!player) return;
  const bool atRest = player->ComeToRest(player->stops_.load());
  {
    const std::lock_guard guard(Living().lock);
    if (Living().byHandle.erase(handle) == 0) return;  // another thread released it meanwhile
  }
  player->events_.Close();
  player->released_.store(true);
  if (atRest) return player->ReleaseReal();
  std::thread([player] { player->ReleaseReal(); }).detach();
}

void Player::ReleaseReal() {
  Real().beneath->endEvents(this);
  Real().functions.libvlc_media_player_release(real_);
  RUNTIME_LOG("player %p released", static_cast<void*>(this));
}

Player::Player() : changed_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

Player::~Player() { CloseHandle(changed_); }

void Player::Deliver(Event event) {
  const std::shared_ptr<Player> self = shared_from_this();  // a callback may release the player
  const LibvlcThreadScope here(this);
  event.object = this;
  if (EndsStart(event.type)) startIsPending_.store(false);
  if (real_ && event.type != kPositionChanged) VideoSize();  // a time event comes with each position
  sound_.OnEvent(real_, event);
  events_.Deliver(event);
  if (event.type != kStopped) return;
  // After the host's callbacks, so that a stop returns when the host has seen its Stopped.
  ++stops_;
  SetEvent(changed_);
}

PictureSize Player::VideoSize() {
  if (InEventOfAnother(this)) return lastSize_.load();
  PictureSize size;
  if (Real().functions.libvlc_video_get_size(real_, 0, &size.width, &size.height) != 0) size = {};
  lastSize_.store(size);
  return size;
}

void Player::SetWindow(void* window) {
  window_.store(window);
  Real().functions.libvlc_media_player_set_hwnd(real_, window);
}

void Player::SetMedia(Media* media) {
  showsNothing_.store(false);
  if (!window_.load()) ShowNothing(media);
  Real().functions.libvlc_media_player_set_media(real_, media);
}

int Player::Play() {
  const RealFunctions& functions = Real().functions;
  if (!window_.load() && !showsNothing_.load()) {
    Media* const media = functions.libvlc_media_player_get_media(real_);
    ShowNothing(media);
    if (media) functions.libvlc_media_release(media);
  }
  startIsPending_.store(true);
  const int result = functions.libvlc_media_player_play(real_);
  if (result != 0) startIsPending_.store(false);
  return result;
}

void Player::ShowNothing(Media* media) {
  if (!media) return;
  Real().functions.libvlc_media_add_option(media, kShowNothing);
  showsNothing_.store(true);
  RUNTIME_LOG("player %p has no window: %s", static_cast<void*>(this), kShowNothing);
}

void Player::Stop() {
  const unsigned before = stops_.load();
  if (ComeToRest(before) && stops_.load() == before && !released_.load()) Deliver({kStopped, nullptr, {}});
}

bool Player::ComeToRest(unsigned stopsBefore) {
  const int result = Real().functions.libvlc_media_player_stop_async(real_);
  if (OnLibvlcThread()) {
    RUNTIME_LOG("player %p: stop from a callback doesn't wait", static_cast<void*>(this));
    return false;
  }
  const ULONGLONG began = GetTickCount64();
  const bool nothingToStop = result < 0 && Real().functions.libvlc_media_player_get_state(real_) != State::kStopping;
  const bool done =
      nothingToStop || WaitServingSentMessages(changed_, [&] { return AtRest(stopsBefore, GetTickCount64() - began); });
  RUNTIME_LOG("player %p: stop took %llu ms%s", static_cast<void*>(this), GetTickCount64() - began,
              done ? "" : " and was given up");
  return done;
}

// A player that was just started still reads as stopped, and its stop may begin and end without an event.
bool Player::AtRest(unsigned stopsBefore, ULONGLONG waited) const {
  if (stops_.load() != stopsBefore) return true;
  if (released_.load()) return true;  // by another thread, or by a message served meanwhile
  if (startIsPending_.load() && waited < kQuietStart) return false;
  const State state = Real().functions.libvlc_media_player_get_state(real_);
  return state == State::kStopped || state == State::kNothingSpecial;
}

}  // namespace vantro::runtime
