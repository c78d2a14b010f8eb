/// A typed client of the Vantro host: one class for each channel, events as streams, errors as exceptions.
library vantro_interface;

export 'src/errors.dart' show FrameException, HostException, MethodMissingException;
export 'src/player_channel.dart';
export 'src/thumbnail_channel.dart';
export 'src/values.dart' show AppEvent, Toast, WindowInfo;
