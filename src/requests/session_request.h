#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "environment/command_set.h"
#include "session/business_rules.h"
#include "session/operations.h"
#include "session/scheduler_link.h"
#include "session/session_gate.h"
#include "session/session_view.h"
#include "sitebook/site_book.h"

namespace qvrcom::requests {

enum class RequestResult {
  kNotDone,  // refused, failed or cancelled; a message has said which
  kDone,     // the operation ran to its end; whatever it fetches is there
  kBusy,     // another program has the session
};

struct SessionRequestParts {
  session::BusinessRulesParts rules;
  environment::DataBase& database;
  session::SessionGate& gate;
  session::SessionScreen& screen;
  session::SchedulerLink& link;
  sitebook::SiteBook& sites;
};

// What a request asks the session dialog for.
struct SessionWish {
  const sitebook::SiteRecord& site;  // as it was shown
  std::string operation;
  std::string partition;
  bool judges_card = true;  // false where another card than the site's decides
};

// What all requests have in common: which sites they refuse, and a session that runs alone, its values filled
// from one site.
class SessionRequest {
 public:
  explicit SessionRequest(const SessionRequestParts& parts) : parts_(parts) {}

  // A card type of exactly "OLD" is answered with a message; with every other one the device counts as new.
  bool accepts_card(const std::string& card_type) const;

  // A box that says why nothing is started.
  void refuse(const std::string& text, const std::string& detail) const;

  // Fills the session values from the site as the book has it by then and runs `session` while this program
  // has the session: kNotDone for a site that has gone or has another title than the one shown, whose card is
  // refused or whose index line would be dropped, kBusy when another program keeps the session (a box has
  // said so in all cases), otherwise what `session` answers. What is missing in the result that it brings is
  // told of in a box, the reason as its detail. Whoever calls traps.
  using Work = std::function<RequestResult(session::SessionResult& brought)>;
  RequestResult run(const SessionWish& wish, const Work& session) const;

  // Its second half: what earlier runs have left in the session is forgotten before `session`.
  RequestResult run_alone(const Work& session) const;

 private:
  std::optional<sitebook::SiteRecord> accepted_site(const SessionWish& wish) const;
  std::optional<sitebook::SiteRecord> stored_site(const sitebook::SiteRecord& shown) const;
  bool accepts(const sitebook::SiteRecord& site) const;
  void take_over(const SessionWish& wish, const sitebook::SiteRecord& site) const;
  void prepare_files() const;
  void name_session_site() const;
  void tell_missing(const session::SessionResult& brought) const;

  SessionRequestParts parts_;
};

}  // namespace qvrcom::requests
