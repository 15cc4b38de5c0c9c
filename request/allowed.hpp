// What a parameter may be set to, as it is told to a person and to other programs.
#pragma once

#include "model/model.hpp"
#include "platform/host/rule_admin.hpp"

namespace kova::request {

// As a rule tells it; `text` completes "it takes ..." and is "" when nothing is known.
using AllowedValues = host::RuleDescription;

// Of a writable parameter, from the rule and the condition in its row, within its type.
AllowedValues allowed_values(const model::Parameter &parameter);

} // namespace kova::request
