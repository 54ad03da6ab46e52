#include "platform/SystemError.h"

#include "platform/Text.h"

#include <cerrno>
#include <system_error>

namespace scenedetect {

std::wstring LastSystemErrorText() {
    return WideFromUtf8(LastSystemErrorClause());
}

std::string LastSystemErrorClause() {
    return std::generic_category().message(errno);
}

} // namespace scenedetect
