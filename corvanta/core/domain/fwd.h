#pragma once

namespace corvanta::core::domain {
class NDomainBase;
class NDomainManager;
}  // namespace corvanta::core::domain
