// Made from interface/channel.json by interface/generate. Not compiled by this project.

import 'dart:typed_data';

import 'package:flutter/services.dart';

import 'errors.dart';
import 'values.dart';

/// The channel `org.vantro.thumbnail/worker`: preview frames of video-on-demand items.
///
/// Make one.
/// docs/channel.md of the host is the reference.
class ThumbnailChannel {
  ThumbnailChannel();

  /// The version of the channels that this client was made for.
  static const int version = 1;

  static const MethodChannel _channel =
      MethodChannel('org.vantro.thumbnail/worker');

  Future<T?> _invoke<T>(String method, [Object? arguments]) =>
      translated<T?>(() => _channel.invokeMethod<T>(method, arguments));

  /// `initialize`: Makes the worker's own libvlc instance and player, unless they already exist.
  ///
  /// Reply: Boolean, `true` when the worker is ready.
  Future<bool> initialize() async {
    final reply = await _invoke<bool>('initialize');
    return reply!;
  }

  /// `getFrame`: Plays the stream silently, seeks and takes a snapshot.
  ///
  /// Reply: map, or error.
  ///
  /// - [mediaId]: names the temporary file, `vantro_thumb_MEDIAID_SECOND.jpg` in the temporary
  /// folder
  /// - [proxyUrl]: the address of the stream
  /// - [timeSeconds]: the position in the stream in seconds, to the millisecond
  /// - [width]: the width of the picture; 0 for the video's width, or for a width in proportion to
  /// the height
  /// - [height]: the height of the picture; 0 for the video's height, or for a height in proportion
  /// to the width
  ///
  /// Throws a [HostException] with the code INVALID_ARGS.
  /// Throws a [FrameException] when there is no frame.
  Future<Uint8List> getFrame({
    required String mediaId,
    required String proxyUrl,
    required double timeSeconds,
    required int width,
    required int height,
  }) async {
    final reply = await _invoke<Map<Object?, Object?>>('getFrame', <String, Object?>{
      'mediaId': mediaId,
      'proxyUrl': proxyUrl,
      'timeSeconds': timeSeconds,
      'width': width,
      'height': height,
    });
    return frameOf(reply!);
  }

  /// `dispose`: Releases the instance and player of `initialize`; does nothing when there are none.
  Future<void> dispose() async {
    await _invoke<Object?>('dispose');
  }
}
