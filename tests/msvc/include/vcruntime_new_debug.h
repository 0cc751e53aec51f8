// Stands in for the header of Microsoft's runtime of this name, which has nothing for us.
#pragma once
