# Reads bytes of DV frames only: usable without the filter object.
add_room(dvutil Dvutil.cpp DEPENDS engine support)
