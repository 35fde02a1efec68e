#include "core/go_on.h"

namespace tornelia {

Q_LOGGING_CATEGORY(lcSkipped, "tornelia.skipped")

}  // namespace tornelia
