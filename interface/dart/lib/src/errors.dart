import 'package:flutter/services.dart';

/// The host answered a request with an error. The codes stand in docs/channel.md of the host.
class HostException implements Exception {
  const HostException(this.code, this.message, this.details);

  final String code;
  final String message;

  /// `false` or null, as the error's row says.
  final Object? details;

  @override
  String toString() => 'HostException($code): $message';
}

/// The host does not have the method, or nothing listens on the channel: an older host, or none.
class MethodMissingException implements Exception {
  const MethodMissingException(this.message);

  final String message;

  @override
  String toString() => 'MethodMissingException: $message';
}

/// `getFrame` got no frame. [reason] is the `error` text of the reply.
class FrameException implements Exception {
  const FrameException(this.reason);

  final String reason;

  @override
  String toString() => 'FrameException: $reason';
}

/// Runs a request and turns the platform's exceptions into those above.
Future<T> translated<T>(Future<T> Function() request) async {
  try {
    return await request();
  } on PlatformException catch (error) {
    throw HostException(error.code, error.message ?? '', error.details);
  } on MissingPluginException catch (error) {
    throw MethodMissingException(error.message ?? '');
  }
}
