#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"

namespace quen {

/// The pieces of an edit that is made in the repository itself, without a working copy.

/// The URL of the folder that holds the branches, and of the trunk; nil where the request's tree is
/// no repository, or one for which that is not configured.
String branchesURLOf(const QuenSourceControlRequest& request);
String trunkURLOf(const QuenSourceControlRequest& request);

/// The item that the request's destination names below the branches folder; nil where either is
/// absent.
String destinationBelowBranches(const QuenSourceControlRequest& request);

/// That the request's repository lacks the locations that the edit needs.
Error missingLocationsError(const QuenSourceControlRequest& request);

} // namespace quen
