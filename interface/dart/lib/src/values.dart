import 'dart:typed_data';

import 'errors.dart';

/// The role of a window: the reply of `getWindowInfo`.
class WindowInfo {
  const WindowInfo({required this.isMasterWindow, required this.windowId});

  WindowInfo.fromMap(Map<Object?, Object?> map)
      : isMasterWindow = map['isMasterWindow'] as bool,
        windowId = map['windowId'] as int;

  /// Whether this is the first window of the process, which holds the provider data.
  final bool isMasterWindow;

  /// Unique among the open windows of one run, without a meaning beyond that.
  final int windowId;
}

/// A message for the user.
class Toast {
  const Toast({required this.message, required this.isShort});

  Toast.fromMap(Map<Object?, Object?> map)
      : message = map['message'] as String,
        isShort = map['short'] == 'true';

  final String message;

  /// Whether it is shown for the shorter time.
  final bool isShort;
}

/// Something that happened to the host: so far only that its last session died.
class AppEvent {
  const AppEvent({required this.type, required this.platform, required this.lastAction});

  AppEvent.fromMap(Map<Object?, Object?> map)
      : type = map['type'] as String,
        platform = map['platform'] as String,
        lastAction = map['lastAction'] as String;

  /// `nativeCrashRecovered`.
  final String type;

  /// `windows`.
  final String platform;

  /// The method that the session was last asked for, `startup` or `unknown`.
  final String lastAction;
}

/// The picture in the reply of `getFrame`, or a [FrameException] when the reply has none.
Uint8List frameOf(Map<Object?, Object?> reply) {
  if (reply['success'] == true) {
    return reply['bytes'] as Uint8List;
  }
  throw FrameException(reply['error'] as String);
}
