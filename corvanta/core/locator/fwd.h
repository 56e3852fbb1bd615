#pragma once

namespace corvanta::core::locator {
class NLocator;
}
