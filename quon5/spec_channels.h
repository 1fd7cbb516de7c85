// The channel lists of the test specification, each cut to its filled part.
#ifndef QUON5_SPEC_CHANNELS_H
#define QUON5_SPEC_CHANNELS_H

#include <algorithm>
#include <iterator>
#include <span>

#include "inc/test_specification.h"

using SpecChannels = std::span<const CI_CHANNEL>;

template <std::size_t N>
SpecChannels filled(const CI_CHANNEL (&channels)[N], short count) {
    return SpecChannels(channels).first(
        static_cast<std::size_t>(std::clamp<int>(count, 0, static_cast<int>(N))));
}

inline SpecChannels ai_channels(const CVS_CI& ci) {
    return filled(ci.AI_channels, ci.num_AI_chns);
}
inline SpecChannels data_channels(const CVS_CI& ci) {
    return filled(ci.data_channels, ci.num_data_chns);
}
inline SpecChannels ecm_channels(const CVS_CI& ci) {
    return filled(ci.ecm_channels, ci.num_ecm_chns);
}
inline SpecChannels group_channels(const CVS_CI& ci, short group) {
    if (group >= static_cast<short>(std::size(ci.num_chn_group_chns))) return {};
    return filled(ci.chn_group_channels[group], ci.num_chn_group_chns[group]);
}
// The logical channels, one per subsystem.
inline SpecChannels subsystem_channels(const CVS_CI& ci) {
    return filled(ci.subsystem_logi_channels, ci.num_subsystems);
}
inline SpecChannels subsystem_group_channels(const CVS_CI& ci, short subsystem) {
    if (subsystem >= static_cast<short>(std::size(ci.num_subsys_grp_chns))) return {};
    return filled(ci.subsys_logi_grp_channels[subsystem], ci.num_subsys_grp_chns[subsystem]);
}

#endif
