const char* of_zone = "SELECT Date FROM PhysicalData WHERE Zone = ?";
