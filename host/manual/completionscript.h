// The script of bash completion, manual/mvpthost.bash.
#pragma once

extern const char kCompletionScript[];
