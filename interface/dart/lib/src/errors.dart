import 'package:flutter/services.dart';

/// The host answered a request with an error. The host's docs/channel.md lists the codes.
class HostException implements Exception {
  const HostException(this.code, this.message, this.details);

  final String code;
  final String message;

  /// `false` or null; see the error's row there.
  final Object? details;

  @override
  String toString() => 'HostException($code): $message';
}

/// The host does not have the method (an older host), or nothing listens on the channel (no host).
class MethodMissingException implements Exception {
  const MethodMissingException(this.message);

  final String message;

  @override
  String toString() => 'MethodMissingException: $message';
}

/// `getFrame` returned no frame. [reason] is the `error` text of the reply.
class FrameException implements Exception {
  const FrameException(this.reason);

  final String reason;

  @override
  String toString() => 'FrameException: $reason';
}

/// Runs a request and converts the platform's exceptions to those above.
Future<T> translated<T>(Future<T> Function() request) async {
  try {
    return await request();
  } on PlatformException catch (error) {
    throw HostException(error.code, error.message ?? '', error.details);
  } on MissingPluginException catch (error) {
    throw MethodMissingException(error.message ?? '');
  }
}
