-- SPDX-License-Identifier: MIT
-- Makes an Ardour session in the folder that $ONDEX_SESSION names: two tracks with the plug-in each. On the first
-- one the right side's modulation index is automated: 0 in the first second, 10 from the third.
local folder = os.getenv("ONDEX_SESSION")
local session = assert(create_session(folder, "session", 48000))

local function track_with_plugin(name)
  local tracks = session:new_audio_track(2, 2, nil, 1, name, ARDOUR.PresentationInfo.max_order,
                                         ARDOUR.TrackMode.Normal, true)
  local plugin = ARDOUR.LuaAPI.new_plugin(session, "urn:kelvane:ondex", ARDOUR.PluginType.LV2, "")
  assert(not plugin:isnil())
  tracks:front():add_processor_by_index(plugin, 0, nil, true)
  return plugin
end

local plugin = track_with_plugin("One")
ARDOUR.LuaAPI.set_processor_param(plugin, 0, 4.0)
ARDOUR.LuaAPI.set_processor_param(plugin, 2, 0.25)
local list, control_list = ARDOUR.LuaAPI.plugin_automation(plugin, 6)
assert(not list:isnil())
for _, point in ipairs({{0, 0}, {1, 0}, {3, 10}, {100, 10}}) do
  control_list:add(Temporal.timepos_t(point[1] * 48000), point[2], false, true)
end
local right_index_port = 10
local parameter = Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, right_index_port)
plugin:to_automatable():automation_control(parameter, true):set_automation_state(ARDOUR.AutoState.Play)

track_with_plugin("Two")
session:save_state("", false, false, false, false, false)
close_session()
quit()
