#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::format {

/// Expands a format of the name language with a person's three names:
///
///     %first% %middle% %last%    the name; without regard to case
///     1%first%  #1%first%        its first letter ("#" keeps the digit from a tag in front of it)
///     %first%2                   its last two letters
///     #U%first%  #L%first%       in upper case, in lower case; also with a digit
///     %n% %nn% %nnn%             `SerialCounter` with at least one, two, three digits
///     %IMPORT1% … %IMPORT99%     field of the import line, while `Importing` is set
///     %IMPORT:Department%        the field under that heading of the import file
///
/// Everything else is plain text, except "#", which is dropped. The result is trimmed. Unless
/// `SerialTokenUsed` is set, `SerialCounter` starts from the setting `IncNumber`; a serial tag sets
/// `SerialTokenUsed`. Tags in a name or a field do not count. Never raises.
std::string UserName(session::Session& session, std::string format, std::string_view first,
                     std::string_view middle, std::string_view last);

}  // namespace twk::format
