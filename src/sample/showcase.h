#pragma once

namespace sample {

/// Positions of the showcase conversations; what each is there for shows in
/// MessageContent::addConversations().
enum Showcase { Ada, Mail, Unnamed, Named, Climbing, ClimbingAgain, Nobody, Con, AdaSms, ShortCode, Scripts };

} // namespace sample
