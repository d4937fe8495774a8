#pragma once

namespace Vorkel::QtDrags {

/// Has drags that the program starts carried out within it where Qt's platform ends them at once, as the
/// offscreen one does. To be called while the application object is made, before Qt first asks its platform.
void provide();

} // namespace Vorkel::QtDrags
