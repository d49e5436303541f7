#pragma once

#include <QByteArray>

#include <functional>

namespace quilmora::test {

/// The bytes that `action` writes to the process's standard output, from whatever layer; none of them reach
/// the outside. The framework's own warnings go to standard error meanwhile. Check the result afterwards, not
/// inside `action`: the test's own report goes to standard output too.
QByteArray standardOutputOf(const std::function<void()> &action);

} // namespace quilmora::test
