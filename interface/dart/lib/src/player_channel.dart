// Made from interface/channel.json by interface/generate. Not compiled by this project.

import 'dart:async';
import 'dart:typed_data';

import 'package:flutter/services.dart';

import 'errors.dart';
import 'values.dart';

/// The channel `org.vantro.player/communicate`: the player, the windows, the database key.
///
/// Make one, in `main` before `runApp`: it sets the channel's handler, and events that come before
/// it exists are lost, except the last one, which the engine keeps.
/// docs/channel.md of the host is the reference.
class PlayerChannel {
  PlayerChannel() {
    _channel.setMethodCallHandler((MethodCall call) async {
      _calls.add(call);
    });
  }

  /// The version of the channels that this client was made for.
  static const int version = 1;

  static const MethodChannel _channel =
      MethodChannel('org.vantro.player/communicate');
  final StreamController<MethodCall> _calls =
      StreamController<MethodCall>.broadcast();

  Future<T?> _invoke<T>(String method, [Object? arguments]) =>
      translated<T?>(() => _channel.invokeMethod<T>(method, arguments));

  Stream<MethodCall> _on(String name) =>
      _calls.stream.where((MethodCall call) => call.method == name);

  // A missing argument of an event is read as an empty text.
  static String _text(MethodCall call) => (call.arguments as String?) ?? '';

  /// `setMedia`: Stops the current stream, loads the address and starts it; no `play` is needed
  /// after it.
  ///
  /// Reply: Boolean, `true` when the media was loaded; or error.
  ///
  /// - [url]: the address of the stream
  /// - [title]: the media's title; optional
  /// - [networkCacheMs]: network cache in milliseconds, not checked; optional
  /// - [initialSeekPositionMs]: the start position in milliseconds; with 0 or less the stream
  /// starts at the beginning; optional
  /// - [isLiveStream]: whether the stream is live, which is the default; optional
  /// - [supportsTimeshift]: whether a live stream can be rewound; optional
  /// - [isInTimeshiftMode]: whether the stream is being rewound now; optional
  /// - [playerProfile]: logged only; `windows_fullscreen` is the only profile; optional
  /// - [localVodProxyEnabled]: logged only; optional
  /// - [originalUrl]: not used; optional
  ///
  /// Throws a [HostException] with the code INVALID_ARGUMENT.
  Future<bool> setMedia({
    required String url,
    String title = '',
    int networkCacheMs = 5000,
    int initialSeekPositionMs = 0,
    bool isLiveStream = true,
    bool supportsTimeshift = false,
    bool isInTimeshiftMode = false,
    String playerProfile = '',
    bool localVodProxyEnabled = false,
    String originalUrl = '',
  }) async {
    final reply = await _invoke<bool>('setMedia', <String, Object?>{
      'URL': url,
      'title': title,
      'networkCacheMs': networkCacheMs,
      'initialSeekPositionMs': initialSeekPositionMs,
      'isLiveStream': isLiveStream,
      'supportsTimeshift': supportsTimeshift,
      'isInTimeshiftMode': isInTimeshiftMode,
      'playerProfile': playerProfile,
      'localVodProxyEnabled': localVodProxyEnabled,
      'originalUrl': originalUrl,
    });
    return reply!;
  }

  /// `play`: Starts or resumes.
  ///
  /// Reply: `true`; without a media `false` and a toast.
  Future<bool> play() async {
    final reply = await _invoke<bool>('play');
    return reply!;
  }

  /// `pause`: Pauses.
  Future<void> pause() async {
    await _invoke<Object?>('pause');
  }

  /// `playPause`: Pauses if it plays, else plays.
  ///
  /// Reply: `true`; when it does not play and there is no media, `false` and a toast.
  Future<bool> playPause() async {
    final reply = await _invoke<bool>('playPause');
    return reply!;
  }

  /// `stop`: Stops.
  Future<void> stop() async {
    await _invoke<Object?>('stop');
  }

  /// `getPosition`: Returns the playing time.
  ///
  /// Reply: 64-bit integer, ms; 0 without a player, otherwise the value that libvlc returns, which
  /// may be -1.
  Future<int> getPosition() async {
    final reply = await _invoke<int>('getPosition');
    return reply!;
  }

  /// `getDuration`: Returns the length.
  ///
  /// Reply: 64-bit integer, ms; 0 or -1 in the same cases as `getPosition`.
  Future<int> getDuration() async {
    final reply = await _invoke<int>('getDuration');
    return reply!;
  }

  /// `isPlaying`: Returns whether it plays.
  Future<bool> isPlaying() async {
    final reply = await _invoke<bool>('isPlaying');
    return reply!;
  }

  /// `seek`: Seeks to the position.
  ///
  /// Reply: Boolean; with `false` also a toast.
  ///
  /// - [positionMs]: the target in milliseconds
  Future<bool> seek({required int positionMs}) async {
    final reply = await _invoke<bool>('seek', <String, Object?>{
      'positionMs': positionMs,
    });
    return reply!;
  }

  /// `seekTo`: As `seek`.
  ///
  /// Reply: as `seek`.
  ///
  /// - [positionMs]: the target in milliseconds
  Future<bool> seekTo({required int positionMs}) async {
    final reply = await _invoke<bool>('seekTo', <String, Object?>{
      'positionMs': positionMs,
    });
    return reply!;
  }

  /// `seekToInitialPosition`: As `seek`.
  ///
  /// Reply: as `seek`.
  ///
  /// - [positionMs]: the target in milliseconds
  Future<bool> seekToInitialPosition({required int positionMs}) async {
    final reply = await _invoke<bool>('seekToInitialPosition', <String, Object?>{
      'positionMs': positionMs,
    });
    return reply!;
  }

  /// `setAlphaFlutterView`: Makes the view translucent below 1.0, opaque from 1.0 on; the level is
  /// not clamped, so a negative one wraps around in a byte.
  ///
  /// - [level]: 0.0 for transparent, 1.0 for opaque
  ///
  /// Throws a [HostException] with the code ENGINE_ERROR.
  Future<void> setAlphaFlutterView({required double level}) async {
    await _invoke<Object?>('setAlphaFlutterView', <String, Object?>{
      'level': level,
    });
  }

  /// `showFlutterView`: Shows the view inside the overlay.
  ///
  /// Throws a [HostException] with the code ENGINE_ERROR.
  Future<void> showFlutterView() async {
    await _invoke<Object?>('showFlutterView');
  }

  /// `hideFlutterView`: Hides the view inside the overlay.
  ///
  /// Throws a [HostException] with the code ENGINE_ERROR.
  Future<void> hideFlutterView() async {
    await _invoke<Object?>('hideFlutterView');
  }

  /// `resizeVLC`: Places the video; while the grid is on, lays out the grid instead.
  ///
  /// - [x]: left edge in pixels of the client area; optional
  /// - [y]: top edge in pixels of the client area; optional
  /// - [width]: width in pixels
  /// - [height]: height in pixels
  Future<void> resizeVLC({int x = 0, int y = 0, required int width, required int height}) async {
    await _invoke<Object?>('resizeVLC', <String, Object?>{
      'x': x,
      'y': y,
      'width': width,
      'height': height,
    });
  }

  /// `resizeVLCFull`: Places the video over the whole client area below the title bar; while the
  /// grid is on, lays out the grid instead.
  Future<void> resizeVLCFull() async {
    await _invoke<Object?>('resizeVLCFull');
  }

  /// `vlcViewFront`: Restores the stacking of video and view.
  Future<void> vlcViewFront() async {
    await _invoke<Object?>('vlcViewFront');
  }

  /// `vlcViewBack`: The same, because the stacking is fixed and can only be restored.
  Future<void> vlcViewBack() async {
    await _invoke<Object?>('vlcViewBack');
  }

  /// `getTracksInfo`: Sends `spuTracks`, then `audioTracks`.
  Future<void> getTracksInfo() async {
    await _invoke<Object?>('getTracksInfo');
  }

  /// `showAvailableSubtitles`: Sends `spuTracks`.
  Future<void> showAvailableSubtitles() async {
    await _invoke<Object?>('showAvailableSubtitles');
  }

  /// `getBuildTime`: Returns the build time of the host.
  ///
  /// Reply: string, such as `Feb  8 2026 04:25:13`.
  Future<String> getBuildTime() async {
    final reply = await _invoke<String>('getBuildTime');
    return reply!;
  }

  /// `getSpuTracks`: Sends `spuTracks`.
  Future<void> getSpuTracks() async {
    await _invoke<Object?>('getSpuTracks');
  }

  /// `setSpu`: Selects the subtitle track `index`.
  ///
  /// Reply: `true`; without a media `false` and a toast.
  ///
  /// - [id]: the track's number in libvlc
  /// - [index]: used instead of `id` when both are given
  Future<bool> setSpu({required int id, int? index}) async {
    final reply = await _invoke<bool>('setSpu', <String, Object?>{
      'id': id,
      if (index != null) 'index': index,
    });
    return reply!;
  }

  /// `setAudioTrack`: Selects the audio track `index`.
  ///
  /// Reply: `true`; without a media `false` and a toast.
  ///
  /// - [id]: the track's number in libvlc
  /// - [index]: used instead of `id` when both are given
  Future<bool> setAudioTrack({required int id, int? index}) async {
    final reply = await _invoke<bool>('setAudioTrack', <String, Object?>{
      'id': id,
      if (index != null) 'index': index,
    });
    return reply!;
  }

  /// `setFontSize`: Checks the size and changes nothing.
  ///
  /// Reply: `true` for a size above 0; `false` and a toast for another size, or without a media.
  ///
  /// - [size]: the size to check; optional
  Future<bool> setFontSize({int size = 16}) async {
    final reply = await _invoke<bool>('setFontSize', <String, Object?>{
      'size': size,
    });
    return reply!;
  }

  /// `enableNativeWakelock`: Keeps the system and the display awake.
  Future<void> enableNativeWakelock() async {
    await _invoke<Object?>('enableNativeWakelock');
  }

  /// `disableNativeWakelock`: Lets the system and the display sleep again, for all windows.
  Future<void> disableNativeWakelock() async {
    await _invoke<Object?>('disableNativeWakelock');
  }

  /// `isNativeWakelockEnabled`: Returns whether this window's last request was to enable the
  /// wakelock.
  Future<bool> isNativeWakelockEnabled() async {
    final reply = await _invoke<bool>('isNativeWakelockEnabled');
    return reply!;
  }

  /// `onStopped`: Does the same as `stop`; it is a request, not an event.
  Future<void> onStoppedRequest() async {
    await _invoke<Object?>('onStopped');
  }

  /// `setMediaTitle`: Stores the title, which the host does not use.
  ///
  /// - [title]: the title
  Future<void> setMediaTitle({required String title}) async {
    await _invoke<Object?>('setMediaTitle', <String, Object?>{
      'title': title,
    });
  }

  /// `setUserAgent`: Stores the user agent, which the host does not use: streams are opened without
  /// it.
  ///
  /// - [userAgent]: the agent
  Future<void> setUserAgent({required String userAgent}) async {
    await _invoke<Object?>('setUserAgent', <String, Object?>{
      'UA': userAgent,
    });
  }

  /// `debugInputLatency`: Nothing.
  ///
  /// - [enable]: not used; optional
  Future<void> debugInputLatency({bool enable = false}) async {
    await _invoke<Object?>('debugInputLatency', <String, Object?>{
      'enable': enable,
    });
  }

  /// `getWindowInfo`: Returns the window's role.
  ///
  /// Reply: map: `isMasterWindow` Boolean, `windowId` 64-bit integer, unique among the open windows
  /// of one run.
  Future<WindowInfo> getWindowInfo() async {
    final reply = await _invoke<Map<Object?, Object?>>('getWindowInfo');
    return WindowInfo.fromMap(reply!);
  }

  /// `requestProviderData`: Sends `providerDataRequested` to the first window.
  ///
  /// Throws a [HostException] with the code NO_MASTER.
  Future<void> requestProviderData() async {
    await _invoke<Object?>('requestProviderData');
  }

  /// `sendProviderData`: Sends `providerDataReceived` to every window except the first.
  ///
  /// - [chunkType]: the type of the chunk, not empty
  /// - [entries]: the chunk's other entries, of any type that the codec supports
  ///
  /// Throws a [HostException] with the code INVALID_CHUNK or INVALID_ARGUMENTS.
  Future<void> sendProviderData({
    required String chunkType,
    Map<String, Object?> entries = const <String, Object?>{},
  }) async {
    await _invoke<Object?>('sendProviderData', <String, Object?>{
      ...entries,
      'chunkType': chunkType,
    });
  }

  /// `enableMultiView`: Changes the single view to a grid, then sends `showMultiViewOverlay`, also
  /// when the grid is on already.
  ///
  /// Reply: `true`, or error.
  ///
  /// Throws a [HostException] with the code VLC_ERROR.
  Future<bool> enableMultiView() async {
    final reply = await _invoke<bool>('enableMultiView');
    return reply!;
  }

  /// `disableMultiView`: Changes the grid to a single view, then sends `hideMultiViewOverlay`, also
  /// when there is no grid.
  ///
  /// Reply: `true`, or error.
  ///
  /// Throws a [HostException] with the code VLC_ERROR.
  Future<bool> disableMultiView() async {
    final reply = await _invoke<bool>('disableMultiView');
    return reply!;
  }

  /// `mvAddStream`: Adds a tile; the active tile does not change.
  ///
  /// Reply: Boolean, or error.
  ///
  /// - [url]: the address of the stream
  /// - [name]: the tile's name, for the log; optional
  ///
  /// Throws a [HostException] with the code INVALID_ARGUMENT or VLC_ERROR.
  Future<bool> mvAddStream({required String url, String name = ''}) async {
    final reply = await _invoke<bool>('mvAddStream', <String, Object?>{
      'url': url,
      'name': name,
    });
    return reply!;
  }

  /// `mvReplaceActive`: Plays another stream in the active tile.
  ///
  /// Reply: Boolean, or error.
  ///
  /// - [url]: the address of the stream
  /// - [name]: the tile's name, for the log; optional
  ///
  /// Throws a [HostException] with the code INVALID_ARGUMENT or VLC_ERROR.
  Future<bool> mvReplaceActive({required String url, String name = ''}) async {
    final reply = await _invoke<bool>('mvReplaceActive', <String, Object?>{
      'url': url,
      'name': name,
    });
    return reply!;
  }

  /// `mvSetActiveIndex`: Makes the tile active; an index beyond the last tile changes nothing and
  /// also returns `true`.
  ///
  /// Reply: `true`; `false` without a grid; or error.
  ///
  /// - [index]: the tile, counted from 0
  ///
  /// Throws a [HostException] with the code INVALID_ARGUMENT or VLC_ERROR.
  Future<bool> mvSetActiveIndex({required int index}) async {
    final reply = await _invoke<bool>('mvSetActiveIndex', <String, Object?>{
      'index': index,
    });
    return reply!;
  }

  /// `mvRemoveActive`: Removes the active tile; the tile at index 0 is never removed.
  ///
  /// Reply: Boolean, or error.
  ///
  /// Throws a [HostException] with the code VLC_ERROR.
  Future<bool> mvRemoveActive() async {
    final reply = await _invoke<bool>('mvRemoveActive');
    return reply!;
  }

  /// `mvSwapTiles`: Swaps two tiles; the active tile stays active at its new index.
  ///
  /// Reply: Boolean, or error.
  ///
  /// - [from]: a tile, counted from 0
  /// - [to]: another tile
  ///
  /// Throws a [HostException] with the code INVALID_ARGUMENT or VLC_ERROR.
  Future<bool> mvSwapTiles({required int from, required int to}) async {
    final reply = await _invoke<bool>('mvSwapTiles', <String, Object?>{
      'from': from,
      'to': to,
    });
    return reply!;
  }

  /// `mvPromoteActiveAndExit`: Ends the grid and shows the active tile's stream in the single view;
  /// opens that stream again unless tile 0 is active; sends no `hideMultiViewOverlay`.
  ///
  /// Reply: Boolean, or error.
  ///
  /// Throws a [HostException] with the code VLC_ERROR.
  Future<bool> mvPromoteActiveAndExit() async {
    final reply = await _invoke<bool>('mvPromoteActiveAndExit');
    return reply!;
  }

  /// `mvExitFullscreen`: Does the same as `disableMultiView`, but sends no event.
  ///
  /// Reply: `true`, or error.
  ///
  /// Throws a [HostException] with the code VLC_ERROR.
  Future<bool> mvExitFullscreen() async {
    final reply = await _invoke<bool>('mvExitFullscreen');
    return reply!;
  }

  /// `getDatabaseEncryptionKey`: Returns the key, which is made on first use; see below.
  ///
  /// Reply: byte list of 32, or error.
  ///
  /// Throws a [HostException] with the code DB_KEY_ERROR.
  Future<Uint8List> getDatabaseEncryptionKey() async {
    final reply = await _invoke<Uint8List>('getDatabaseEncryptionKey');
    return reply!;
  }

  /// `toggleFullscreen`: Enters or leaves fullscreen.
  ///
  /// Throws a [HostException] with the code WINDOW_ERROR.
  Future<void> toggleFullscreen() async {
    await _invoke<Object?>('toggleFullscreen');
  }

  /// `showToast`: See above.
  /// Argument: map: `message` string, `short` the string `true` or `false`.
  Stream<Toast> get showToast =>
      _on('showToast').map<Toast>((MethodCall call) => Toast.fromMap(call.arguments as Map<Object?, Object?>));

  /// `appEvent`: At start-up after a session that ended abnormally, after the toast; `lastAction`
  /// is the ACTION of the toast.
  /// Argument: map of strings: `type` `nativeCrashRecovered`, `platform` `windows`, `lastAction`.
  Stream<AppEvent> get appEvent =>
      _on('appEvent').map<AppEvent>((MethodCall call) => AppEvent.fromMap(call.arguments as Map<Object?, Object?>));

  /// `showMultiViewOverlay`: After the reply `true` to `enableMultiView`.
  Stream<void> get showMultiViewOverlay => _on('showMultiViewOverlay');

  /// `hideMultiViewOverlay`: After the reply `true` to `disableMultiView`; not after other requests
  /// that end the grid.
  Stream<void> get hideMultiViewOverlay => _on('hideMultiViewOverlay');

  /// `providerDataRequested`: To the first window, when any window calls `requestProviderData`.
  Stream<void> get providerDataRequested => _on('providerDataRequested');

  /// `providerDataReceived`: To every window except the first.
  /// Argument: the map given to `sendProviderData`, with its keys sorted.
  Stream<Map<Object?, Object?>> get providerDataReceived =>
      _on('providerDataReceived').map<Map<Object?, Object?>>((MethodCall call) => call.arguments as Map<Object?, Object?>);

  /// `spuTracks`: After a request for the subtitle tracks, also when there are none; not sent
  /// without a player, or when libvlc lacks the track functions; it has no ids or names.
  Stream<void> get spuTracks => _on('spuTracks');

  /// `audioTracks`: The same for the audio tracks.
  Stream<void> get audioTracks => _on('audioTracks');

  /// `search_query_changed`: After a pause in typing in the search box.
  /// Argument: string: the query; none when the box was cleared.
  Stream<String> get searchQueryChanged =>
      _on('search_query_changed').map<String>((MethodCall call) => _text(call));

  /// `settings_requested`: When the menu's settings command is chosen.
  Stream<void> get settingsRequested => _on('settings_requested');

  /// `about_requested`: When the menu's about command is chosen.
  Stream<void> get aboutRequested => _on('about_requested');

  /// `onOpening`: Libvlc opens the media.
  Stream<void> get onOpening => _on('onOpening');

  /// `onBuffering`: Buffering progresses.
  /// Argument: string: percent with six decimals, such as `100.000000`.
  Stream<double> get onBuffering =>
      _on('onBuffering').map<double>((MethodCall call) => double.parse(_text(call)));

  /// `onPlaying`: Playback runs; in a grid for any tile, without its index.
  Stream<void> get onPlaying => _on('onPlaying');

  /// `onMediaChanged`: Another media is set; in a grid for any tile, without its index.
  Stream<void> get onMediaChanged => _on('onMediaChanged');

  /// `onPaused`: Playback is paused.
  Stream<void> get onPaused => _on('onPaused');

  /// `onStopped`: Playback has stopped, also at the end of a stream; not sent for the stop inside
  /// `setMedia`.
  Stream<void> get onStopped => _on('onStopped');

  /// `onEndReached`: Never sent for a real stream; the end of a stream is `onStopped`.
  Stream<void> get onEndReached => _on('onEndReached');

  /// `onError`: `Media player encountered an error`, or `Playback issue detected. Please try
  /// again.` when the stall watchdog gives up.
  /// Argument: string.
  Stream<String> get onError =>
      _on('onError').map<String>((MethodCall call) => _text(call));

  /// `onPositionChanged`: The position changes.
  /// Argument: string: 0 to 1 with six decimals, such as `0.500000`.
  Stream<double> get onPositionChanged =>
      _on('onPositionChanged').map<double>((MethodCall call) => double.parse(_text(call)));

  /// `onTimeChanged`: The time changes.
  /// Argument: string: milliseconds in decimal.
  Stream<int> get onTimeChanged =>
      _on('onTimeChanged').map<int>((MethodCall call) => int.parse(_text(call)));

  /// `onSeekableChanged`: Seeking becomes possible or impossible.
  /// Argument: string: `true` or `false`.
  Stream<bool> get onSeekableChanged =>
      _on('onSeekableChanged').map<bool>((MethodCall call) => _text(call) == 'true');
}
