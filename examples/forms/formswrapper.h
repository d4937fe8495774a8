#pragma once

/// Makes the forms of this program testable: connects to the runner that the environment names, and does
/// nothing where it names none. The application object must be there already.
void startForTests();
