// Counts of live objects, for tests that assert that nothing leaks.
#pragma once

// BSTRs that were allocated and not yet freed in this process; 0 where the system itself allocates them.
long LiveBstrCount() noexcept;
// Objects of the project's own DOM (documents, nodes, lists, maps) that somebody still holds.
long LiveDomObjectCount() noexcept;
