#include "corvanta/data/domain/projection/NProjectionChangeListener.h"

namespace corvanta::data::domain::projection {

NProjectionChangeListener::~NProjectionChangeListener() = default;

}  // namespace corvanta::data::domain::projection
