#pragma once

/// What lies outside the classes: where elements stand, and what they are worth as text.
namespace FormsDelegates {

void registerAll();

} // namespace FormsDelegates
