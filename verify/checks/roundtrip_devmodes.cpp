// DEVMODEs with each public field at its edges: from the second run on, nothing changes any more.
#include <subsystem/devmodefields.h>
#include <subsystem/hosterror.h>
#include <subsystem/xmlfile.h>

#include <verify/check.h>
#include <verify/testbench.h>

namespace {

std::vector<std::string> ListEdges(const DevmodeField& field) {
    switch (field.kind) {
        case DevmodeFieldKind::Short:
            return {"0", "1", "2", "3", "4", "100", "256", "9999", "32767", "-1", "-4", "-32768"};
        case DevmodeFieldKind::Word:
            return {"0", "1", "2", "300", "65535"};
        case DevmodeFieldKind::Dword:
            return {"0", "1", "2", "3", "4", "256", "4294967295"};
        case DevmodeFieldKind::Text:
            return {"", "A4", "no such form", "123456789012345678901234567890"};
    }
    return {};
}

class DevmodeTrial {
public:
    explicit DevmodeTrial(TestBench& bench) : bench_(bench), session_(bench.OpenSession()) {}

    void Try(const DevmodeField& field, const std::string& value, bool withFlag) {
        DevmodeBuffer first = bench_.MakeDevmode(*session_);
        DEVMODEW fields = first.CopyPublicPart();
        SetDevmodeField(fields, field.name, value);
        if (!withFlag) fields.dmFields &= ~field.flag;
        first.SetPublicPart(fields);
        bench_.Step(std::string("a DEVMODE with ") + field.name + " " + value +
                    (withFlag ? "" : " and no flag for it"));
        bench_.SetInput(first);
        const Run second = Convert(MakeTicket(first)), third = Convert(second.ticket);
        const std::string account = std::string(field.name) + " " + value;
        bench_.Require(third.ticket == second.ticket, account + ": the third ticket is another than the second");
        bench_.Require(third.devmode == second.devmode, account + ": the third DEVMODE is another than the second");
    }

private:
    struct Run {
        std::string devmode, ticket;
    };

    std::string MakeTicket(DevmodeBuffer devmode) const { return FormatDocument(session_->MakeTicket(devmode).Get()); }
    Run Convert(const std::string& ticket) const {
        DevmodeBuffer devmode = bench_.MakeDevmode(*session_);
        session_->ApplyTicket(ReadDocumentBytes(ticket, "the ticket").Get(), devmode);
        return {std::string(devmode.GetBytesView()), MakeTicket(devmode)};
    }

    TestBench& bench_;
    std::unique_ptr<PrintSession> session_;
};

void EveryFieldSettles(TestBench& bench) {
    DevmodeTrial trial(bench);
    for (const DevmodeField& field : GetDevmodeFields()) {
        if (!field.settable) continue;
        for (const std::string& value : ListEdges(field)) {
            trial.Try(field, value, true);
            if (field.flag != 0) trial.Try(field, value, false);
        }
    }
}

const CheckRegistration fields(
    {CheckGroup::RoundTrip, "devmode-fields-settle",
     "every DEVMODE field at its edges: the second run's ticket and DEVMODE stay as they are", EveryFieldSettles});

}  // namespace
