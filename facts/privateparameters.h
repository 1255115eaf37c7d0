// Names of the parameters that the component keeps in a PrintTicket under the driver family's private namespace.
#pragma once

namespace facts {

inline constexpr char kDriverDataParameter[] = "JobMorvaneDriverData";      // the whole private block
inline constexpr char kJobTicketParameter[] = "JobMorvaneMvjtJobTicket";    // the job's own ticket
inline constexpr char kPrivateCopiesParameter[] = "JobCopiesAllDocuments";  // the DEVMODE's copies
// What stands for the namespace in a document that does not declare it.
inline constexpr char kFallbackPrefix[] = "ns0000";

}  // namespace facts
