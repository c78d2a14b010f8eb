import 'dart:typed_data';

import 'errors.dart';

/// The role of a window; the reply of `getWindowInfo`.
class WindowInfo {
  const WindowInfo({required this.isMasterWindow, required this.windowId});

  WindowInfo.fromMap(Map<Object?, Object?> map)
      : isMasterWindow = map['isMasterWindow'] as bool,
        windowId = map['windowId'] as int;

  /// Whether this is the first window of the process, which holds the provider data.
  final bool isMasterWindow;

  /// Unique among the open windows of one run; it has no other meaning.
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

/// An event of the host itself. The only one reports that its last session ended abnormally.
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

  /// The last method that the interface called in that session, `startup` or `unknown`.
  final String lastAction;
}

/// Returns the picture in the reply of `getFrame`.
/// Throws a [FrameException] when the reply has none.
Uint8List frameOf(Map<Object?, Object?> reply) {
  if (reply['success'] == true) {
    return reply['bytes'] as Uint8List;
  }
  throw FrameException(reply['error'] as String);
}
