#pragma once

/// How long a test waits for what must come: longer than it ever takes, also on a machine that is busy with much else.
inline constexpr int patienceMs = 120'000;
