#pragma once

namespace genutil::text {

// Control and direction-changing characters have no look of their own and could hide what a text says. A view
// shows each as one column of inverse video, which no real character has, with a sign in it:
//   C0, DEL       the letter of the ^X notation: ESC is [, DEL is ?, NUL is @
//   C1            the same letter in lower case: NEL (U+0085) is e
//   U+200E, 200F  > and <, the marks of a direction; U+061C ~, the Arabic one
//   U+202A..202E  } { | ) ( for embedding left-to-right, right-to-left, their end, and the two overrides
//   U+2066..2069  6 7 8 9 for the isolates and their end
//   others        . zero-width space, + word joiner, = byte-order mark, - soft hyphen, ; line separator,
//                 : paragraph separator, * any other
// The result is that sign, or 0 for a character that shows itself.
char controlMark(char32_t character);

} // namespace genutil::text
