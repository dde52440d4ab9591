#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace kelvinbar::fakes {

/// Attacks something at its first place, at its second, and so on.
///
/// `attempt` is called with 1, 2, … until it returns 0. Otherwise it returns how much it has tried, and
/// states with the test's own assertions what must hold. Child processes make the attempts, a block of them
/// each, and none may leave a file open: the attempt that crashes, fails or takes minutes is named, and those
/// after it are made all the same. `what` names the attack in failures. After ten failures the attack ends.
///
/// Returns how much was tried, without what failed. One thread.
std::int64_t attemptEach(std::string_view what,
                         const std::function<std::int64_t(std::int64_t number)>& attempt);

} // namespace kelvinbar::fakes
