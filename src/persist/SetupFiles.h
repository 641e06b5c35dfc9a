// Setup files stored and recalled, by whichever way, with all that the operator is told of it.
#pragma once

#include <cstdint>
#include <string>

#include "persist/SetupContext.h"

namespace vc {

// Writes the record into a file with a description, which the record takes on. False where that failed, and
// then nothing has changed. A path without a file's name fails.
bool StoreSetup(SetupContext& context, const std::string& path, const std::string& description,
                std::int16_t protect);
void TellNotStored(const SetupContext& context, const std::string& name);
// Stands in the way of a store: the operator has been told.
bool ProtectedInTheWay(const SetupContext& context, const std::string& path, const std::string& name);

// Whether a file begins as a setup of this program does. Where it does not the operator is told, by the name.
bool IsSetup(const SetupContext& context, const std::string& path, const std::string& name);
// Brings the record to what the file holds, as one step with this title. False, told, where it cannot be read
// whole; the record is then as it was.
bool RecallSetup(SetupContext& context, const std::string& path, const std::string& name,
                 const std::string& step = "Setup Recall");

}  // namespace vc
